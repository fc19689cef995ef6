#pragma once

#include <string>
#include <string_view>

#include "forms/Form.h"

namespace corvex {

/// How a control is to look beyond its kind.
enum class Look {
  Plain,
  Screen,     ///< A frame: the modem's lit screen, whose colours all within it share. A label: a row of it,
              ///< fixed-pitch.
  PopUp,      ///< A frame that lies over others and is to catch the eye.
  Window,     ///< A frame that is a window within the window, with its title in a bar.
  Indicator,  ///< A label or an image: one of a row of small signs, each on a ground of its own.
  Key,        ///< A button: its text leaves a square at its left for an image that lies there.
};

enum class Align { Left, Centre, Right };

/// Values of a control at design time; each kind uses those that it has.
struct Design {
  std::string_view name = {};
  int index = -1;  ///< Place in an array of controls, or -1.
  Rect rect = {};  ///< Within the container.
  std::string_view caption = {};
  std::string_view toolTip = {};
  bool visible = true;
  bool enabled = true;
  Font font = {};
  int interval = 0;                  ///< Timers: milliseconds.
  std::string_view picture = {};     ///< See Image::picture.
  std::string_view shortcut = {};    ///< Menu entries: see MenuItem::shortcut.
  std::string_view accessible = {};  ///< See Control::accessible.
  Look look = Look::Plain;
  Align align = Align::Left;  ///< Labels.
};

/// What the user has dragged to a control.
struct Drop {
  /// What the source lets be done with it: 1 to copy it, 2 to move it, 4 to link to it, all added up. 7 on a
  /// system that does not tell.
  int effect = 7;
  std::vector<std::string> files;  ///< Paths, in the encoding of the system's narrow file names.
};

/// What all controls have in common. A control belongs to the form for good.
class Control : public Observable {
 public:
  Control(Container& parent, const Design& design);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Form& form() const { return parent_.form(); }
  Container& parent() const { return parent_; }
  const std::string& name() const { return name_; }
  int index() const { return index_; }

  /// The name of the kind, such as "CommandButton".
  virtual std::string_view TypeName() const = 0;

  Property<Rect> rect;
  Property<bool> visible;
  Property<bool> enabled;
  Property<std::string> toolTip;
  /// What a screen reader says of the control, with "%" in the place of the text that it shows, such as
  /// "Temperature: %". Empty: that text alone; a picture is then only to be looked at.
  Property<std::string> accessible;
  Property<Font> font;
  Event<const Drop&> drop;  ///< Something was dragged here. Filled, if at all, before the form is shown.
  Event<> gotFocus;         ///< By the user or the logic.
  const Look look;
  const Align align;
  std::string tag;  ///< Shown nowhere; for what belongs to the control.

  void SetFocus() { form().Focus(*this); }
  bool HasFocus() const { return form().Focused() == this; }

  /// Puts the control in front of the others in its container.
  void BringToFront();
  /// The larger, the nearer to the front.
  int order() const { return order_; }

  void Changed(Change change) override;

 protected:
  ~Control() = default;

 private:
  Container& parent_;
  std::string name_;
  int index_;
  int order_;
};

}  // namespace corvex
