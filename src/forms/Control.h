#pragma once

#include <string>
#include <string_view>

#include "forms/Form.h"

namespace corvex {

/// A special appearance of a control. Each comment names the types of control that use it.
enum class Look {
  Plain,
  Screen,     ///< Frame: the modem's screen; controls in the frame use its colours. Label: a row of text on
              ///< that screen, in a fixed-pitch font.
  PopUp,      ///< Frame: covers other controls and draws the user's attention.
  Window,     ///< Frame: a window within the form, with a title bar.
  Indicator,  ///< Label or image: one of a row of small indicators, each with its own background.
  Key,        ///< Button: the text leaves room for a square image at the left.
};

enum class Align { Left, Centre, Right };

/// Initial values of a control. Each type of control uses the values that apply to it.
struct Design {
  std::string_view name = {};
  int index = -1;  ///< Index in an array of controls, or -1.
  Rect rect = {};  ///< Relative to the container.
  std::string_view caption = {};
  std::string_view toolTip = {};
  bool visible = true;
  bool enabled = true;
  Font font = {};
  int interval = 0;                  ///< Timers only: in milliseconds.
  std::string_view picture = {};     ///< See Image::picture.
  std::string_view shortcut = {};    ///< Menu entries only: see MenuItem::shortcut.
  std::string_view accessible = {};  ///< See Control::accessible.
  Look look = Look::Plain;
  Align align = Align::Left;  ///< Labels only.
};

/// Data that the user has dragged to a control and dropped there.
struct Drop {
  /// The operations that the source allows, as a sum: 1 copy, 2 move, 4 link. 7 if the system does not
  /// provide this information.
  int effect = 7;
  std::vector<std::string> files;  ///< Paths in the system's narrow file name encoding.
};

/// The base class of all controls. A control belongs to the same form for its whole lifetime.
class Control : public Observable {
 public:
  Control(Container& parent, const Design& design);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Form& form() const { return parent_.form(); }
  Container& parent() const { return parent_; }
  const std::string& name() const { return name_; }
  int index() const { return index_; }

  /// The name of the control's type, for example "CommandButton".
  virtual std::string_view TypeName() const = 0;

  Property<Rect> rect;
  Property<bool> visible;
  Property<bool> enabled;
  Property<std::string> toolTip;
  /// The text that a screen reader speaks for the control. "%" is replaced by the text that the control
  /// shows, for example "Temperature: %". If this property is empty, the screen reader speaks only the text
  /// that the control shows. A picture is then ignored.
  Property<std::string> accessible;
  Property<Font> font;
  Event<const Drop&> drop;  ///< Something was dropped here. Set a handler only before the form is shown.
  Event<> gotFocus;         ///< The user or the logic has moved the focus here.
  /// The user or the logic has moved the focus from here to another control of the form, or to none. Not
  /// raised when another window becomes active.
  Event<> lostFocus;
  const Look look;
  const Align align;
  std::string tag;  ///< Additional data of the control. Never displayed.

  void SetFocus() { form().Focus(*this); }
  bool HasFocus() const { return form().Focused() == this; }

  /// Moves the control in front of all other controls in its container.
  void BringToFront();
  /// The stacking order. A control with a larger value is in front.
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
