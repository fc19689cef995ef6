#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "forms/Control.h"

// The kinds of control that the windows use. A kind holds what can be seen of it and the events by which the
// window system tells what the user did; it has no behaviour of its own beyond that.

namespace corvex {

/// A panel that holds other controls.
class Frame : public Control, public Container {
 public:
  Frame(Container& parent, const Design& design)
      : Control(parent, design),
        Container(parent.form()),
        caption{*this, Change::Caption, std::string(design.caption)} {}
  using Control::form;
  std::string_view TypeName() const override { return "Frame"; }
  Property<std::string> caption;  ///< Empty: no title is shown.
  /// What stands in it is not current: it is shown in pale colours.
  Property<bool> dimmed{*this, Change::Dimmed, false};
};

class Label : public Control {
 public:
  Label(Container& parent, const Design& design)
      : Control(parent, design),
        caption{*this, Change::Caption, std::string(design.caption)},
        picture(design.picture) {}
  std::string_view TypeName() const override { return "Label"; }
  Property<std::string> caption;
  const std::string picture;  ///< As Image::picture; stands before the caption of an indicator.
  /// What gets the focus by the key behind "&" in the caption, which has no meaning without it. Set before
  /// the form is shown.
  Control* buddy = nullptr;
  Event<> click;
};

class Button final : public Control {
 public:
  Button(Container& parent, const Design& design)
      : Control(parent, design),
        caption{*this, Change::Caption, std::string(design.caption)},
        picture{*this, Change::Picture, std::string(design.picture)} {}
  std::string_view TypeName() const override { return "CommandButton"; }
  Property<std::string> caption;  ///< "&" stands before the key that works with Alt.
  Property<std::string> picture;  ///< As Image::picture.
  Event<> click;
};

/// One of several of which one is chosen within a container.
class OptionButton : public Control {
 public:
  OptionButton(Container& parent, const Design& design)
      : Control(parent, design), caption{*this, Change::Caption, std::string(design.caption)} {}
  std::string_view TypeName() const override { return "OptionButton"; }
  Property<std::string> caption;
  Property<bool> value{*this, Change::Checked, false};
  Event<> click;
};

/// Checked or not, by itself.
class CheckBox : public Control {
 public:
  CheckBox(Container& parent, const Design& design)
      : Control(parent, design), caption{*this, Change::Caption, std::string(design.caption)} {}
  std::string_view TypeName() const override { return "CheckBox"; }
  Property<std::string> caption;
  Property<bool> value{*this, Change::Checked, false};
  Event<> click;  ///< Comes behind the new value.
};

/// A text of one byte a character. Changed by editing, so that a long text is never handed over whole.
class TextBox : public Control {
 public:
  TextBox(Container& parent, const Design& design) : Control(parent, design), text_(design.caption) {}
  std::string_view TypeName() const override { return "TextBox"; }

  struct Selection {
    std::size_t start = 0;  ///< From 0; where the next character goes if nothing is selected.
    std::size_t length = 0;
    friend bool operator==(const Selection&, const Selection&) = default;
  };

  const std::string& Text() const { return text_; }
  void SetText(std::string_view text) { Edit(0, text_.size(), text); }
  void Append(std::string_view text) { Edit(text_.size(), 0, text); }
  /// Replaces `removed` bytes at `position`; both are limited to the text there is. The selection stays on
  /// what it was on, and one that is empty behind what is inserted at its place.
  void Edit(std::size_t position, std::size_t removed, std::string_view inserted);
  /// Replaces what is selected; nothing is selected then.
  void ReplaceSelection(std::string_view text);
  /// For the window system: takes over what the user typed; `change` comes behind it, and the selection.
  void AdoptText(std::string text);
  /// The same of one place in the text, limited as with Edit and with the selection moved likewise: `change`
  /// comes later, and the logic may edit before it.
  void AdoptEdit(std::size_t position, std::size_t removed, std::string_view inserted);

  std::string_view SelText() const;

  bool multiLine = false;                                ///< Set before the form is shown.
  Property<bool> locked{*this, Change::Enabled, false};  ///< The user cannot type.
  Property<Selection> selection{*this, Change::Selection, {}};
  void SelectAll() { selection = Selection{0, text_.size()}; }
  Property<Color> backColor{*this, Change::BackColor, kWindowColor};
  Property<Color> foreColor{*this, Change::ForeColor, kWindowTextColor};
  Event<> change;
  /// The text has changed, by the user or the logic: at a place (first argument) so many bytes (second) have
  /// been replaced by so many others (third). For what keeps places in the text.
  Event<std::size_t, std::size_t, std::size_t> edited;

 private:
  std::string text_;
};

/// Two arrows that step a whole number through a range, one at a time. The number goes to the tag of the text
/// box beside them, the buddy; what is shown for it there is for the logic to say.
class UpDown : public Control {
 public:
  /// The value begins with `min`.
  UpDown(Container& parent, const Design& design, TextBox& buddy, int min, int max);
  std::string_view TypeName() const override { return "UpDown"; }

  TextBox& buddy() const { return buddy_; }
  int min() const { return min_; }
  int max() const { return max_; }
  Property<int> value;  ///< Set beyond the range it takes the nearer end of it.
  /// For the window system: takes over the step of the user; `change` comes behind it.
  void AdoptValue(int stepped);
  Event<> change;

  void Changed(Change what) override;

 private:
  TextBox& buddy_;
  int min_;
  int max_;
};

class Image : public Control {
 public:
  Image(Container& parent, const Design& design)
      : Control(parent, design), picture{*this, Change::Picture, std::string(design.picture)} {}
  std::string_view TypeName() const override { return "Image"; }
  /// A name that the window system knows ("mail", "key 3", "logo"), or the path of a picture file behind
  /// "file:". Nothing is shown for one that it does not know or cannot load.
  Property<std::string> picture;
  Event<> click;
};

/// A straight line.
class Line : public Control {
 public:
  /// From the upper left of the design's place to the lower right.
  Line(Container& parent, const Design& design)
      : Control(parent, design),
        ends{*this,
             Change::Rect,
             {design.rect.left, design.rect.top, design.rect.left + design.rect.width,
              design.rect.top + design.rect.height}} {}
  std::string_view TypeName() const override { return "Line"; }
  Property<LineEnds> ends;
};

struct ListItem {
  std::string key;
  std::string text;
  std::int16_t icon = 0;  ///< Number in the set of menu icons.
  friend bool operator==(const ListItem&, const ListItem&) = default;
};

/// A list of icons with texts.
class ListView : public Control {
 public:
  ListView(Container& parent, const Design& design) : Control(parent, design) {}
  std::string_view TypeName() const override { return "ListView"; }

  const std::vector<ListItem>& Items() const { return items_; }
  void Clear();
  void Add(ListItem item);

  /// Place of the selected item, from 1; 0 is none.
  Property<int> selected{*this, Change::Selection, 0};
  /// Horizontal spacing of the icons in the low 16 bits, vertical in the high ones, in pixels for a font of 8
  /// points: it grows with the font.
  Property<std::uint32_t> iconSpacing{*this, Change::Spacing, 0};
  Event<char> keyPress;  ///< A typed character. Arrow keys move the selection without it.
  Event<> doubleClick;

 private:
  std::vector<ListItem> items_;
};

/// A plain list of texts.
class ListBox : public Control {
 public:
  ListBox(Container& parent, const Design& design) : Control(parent, design) {}
  std::string_view TypeName() const override { return "ListBox"; }

  const std::vector<std::string>& Items() const { return items_; }
  void Clear();
  void AddItem(std::string text);

  /// Place of the selected item, from 0; -1 is none.
  Property<int> listIndex{*this, Change::Selection, -1};
  Event<char> keyPress;
  Event<> doubleClick;

 private:
  std::vector<std::string> items_;
};

/// Nothing to see: takes the keyboard focus and hands on what is typed, a text of one or two characters.
class KeySource : public Control {
 public:
  KeySource(Container& parent, const Design& design) : Control(parent, design) {}
  std::string_view TypeName() const override { return "KeySource"; }
  Event<std::string_view> keys;
};

/// A row of tabs; the logic shows what belongs to the selected one.
class TabStrip : public Control {
 public:
  TabStrip(Container& parent, const Design& design, std::vector<std::string> tabs)
      : Control(parent, design), captions(std::move(tabs)) {}
  std::string_view TypeName() const override { return "TabStrip"; }
  const std::vector<std::string> captions;
  Property<int> selected{*this, Change::Selection, 1};  ///< From 1.
  Event<> click;
};

/// An entry of the menu bar or of a menu.
class MenuItem : public Control {
 public:
  /// An entry of the menu bar.
  MenuItem(Form& parent, const Design& design) : MenuItem(parent, nullptr, design) {}
  /// An entry of a menu.
  MenuItem(MenuItem& menu, const Design& design) : MenuItem(menu.form(), &menu, design) {}
  std::string_view TypeName() const override { return "Menu"; }
  MenuItem* menu() const { return menu_; }  ///< The entry that this one stands under, or none.
  Property<std::string> caption;            ///< "-" is a line between entries.
  Property<bool> checked{*this, Change::Checked, false};
  /// The keys that do the same, such as "Ctrl+P". To be shown: it is the form's keyDown that listens to them,
  /// as only the logic knows when keys are the modem's.
  const std::string shortcut;
  Event<> click;

 private:
  MenuItem(Form& form, MenuItem* menu, const Design& design)
      : Control(form, design),
        caption{*this, Change::Caption, std::string(design.caption)},
        shortcut(design.shortcut),
        menu_(menu) {
    form.hasMenuBar_ = true;
  }
  MenuItem* menu_;
};

/// Ticks every `interval` milliseconds while enabled. The next interval begins when a tick has returned, so
/// that a tick that waits is never entered again from its own wait. A tick may destroy its timer, with the
/// form or alone, and go on.
class Timer : public Control {
  /// What a tick needs until it returns, even if the timer is gone by then.
  struct Run {
    Event<> tick;
    bool ticking = false;
    bool timerGone = false;
  };
  const std::shared_ptr<Run> run_ = std::make_shared<Run>();

 public:
  Timer(Form& form, const Design& design);
  ~Timer();
  std::string_view TypeName() const override { return "Timer"; }
  int interval() const { return interval_; }
  Event<>& tick;

  void Changed(Change change) override;

 private:
  void Start();
  void Stop();
  void Tick();

  int interval_;
  EventLoop::TimerId pending_ = 0;
};

}  // namespace corvex
