#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "forms/Control.h"

// The types of controls that the windows use. A control contains its visible state and the events that the
// window system raises when the user acts on it. It has no other behaviour.

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
  Property<std::string> caption;  ///< The title. Empty: no title is shown.
  /// The content of the frame is out of date and is shown in pale colours.
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
  const std::string picture;  ///< See Image::picture. Shown before the caption of an indicator.
  /// The control that gets the focus when the user presses Alt and the key that follows "&" in the caption.
  /// Without a buddy, "&" has no special meaning. Set before the form is shown.
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
  Property<std::string> caption;  ///< "&" marks the next character as the key that clicks with Alt.
  Property<std::string> picture;  ///< See Image::picture.
  Event<> click;
};

/// A radio button. Only one option button in a container can be selected.
class OptionButton : public Control {
 public:
  OptionButton(Container& parent, const Design& design)
      : Control(parent, design), caption{*this, Change::Caption, std::string(design.caption)} {}
  std::string_view TypeName() const override { return "OptionButton"; }
  Property<std::string> caption;
  Property<bool> value{*this, Change::Checked, false};
  Event<> click;
};

/// A box that is checked or unchecked, independently of all others.
class CheckBox : public Control {
 public:
  CheckBox(Container& parent, const Design& design)
      : Control(parent, design), caption{*this, Change::Caption, std::string(design.caption)} {}
  std::string_view TypeName() const override { return "CheckBox"; }
  Property<std::string> caption;
  Property<bool> value{*this, Change::Checked, false};
  Event<> click;  ///< Raised after the value has changed.
};

/// A box with a text of one byte per character. Changes are reported as edits, so that a long text is never
/// transferred as a whole.
class TextBox : public Control {
 public:
  TextBox(Container& parent, const Design& design) : Control(parent, design), text_(design.caption) {}
  std::string_view TypeName() const override { return "TextBox"; }

  struct Selection {
    std::size_t start = 0;  ///< Counted from 0. If nothing is selected, the position of the caret.
    std::size_t length = 0;
    friend bool operator==(const Selection&, const Selection&) = default;
  };

  const std::string& Text() const { return text_; }
  void SetText(std::string_view text) { Edit(0, text_.size(), text); }
  void Append(std::string_view text) { Edit(text_.size(), 0, text); }
  /// Replaces `removed` bytes at `position` with `inserted`. Both numbers are limited to the existing text.
  /// The selection stays on the same characters. A caret at `position` moves to the end of the inserted text.
  void Edit(std::size_t position, std::size_t removed, std::string_view inserted);
  /// Replaces the selected text and sets the caret to the end of the new text.
  void ReplaceSelection(std::string_view text);
  /// For the window system: stores the new text after the user has typed. The caller then updates the
  /// selection and raises `change`.
  void AdoptText(std::string text);
  /// For the window system: stores an edit of the user. The position, the length and the selection are
  /// handled as in Edit. The caller raises `change` later; the logic may edit the text before that.
  void AdoptEdit(std::size_t position, std::size_t removed, std::string_view inserted);

  /// The selected text.
  std::string_view SelText() const;

  bool multiLine = false;  ///< Set before the form is shown.
  bool masked = false;     ///< Shows a dot for each character, for a password. Set before the form is shown.
  Property<bool> locked{*this, Change::Enabled, false};  ///< The user cannot type.
  Property<Selection> selection{*this, Change::Selection, {}};
  void SelectAll() { selection = Selection{0, text_.size()}; }
  Property<Color> backColor{*this, Change::BackColor, kWindowColor};
  Property<Color> foreColor{*this, Change::ForeColor, kWindowTextColor};
  Event<> change;
  /// The user or the logic has changed the text. The arguments are the position, the number of removed bytes
  /// and the number of inserted bytes. Intended for code that stores positions in the text.
  Event<std::size_t, std::size_t, std::size_t> edited;

 private:
  std::string text_;
};

/// Two arrow buttons that step a whole number up or down by one within a range. The number is stored in the
/// tag of a text box, the buddy. The logic decides what text the buddy shows.
class UpDown : public Control {
 public:
  /// The initial value is `min`.
  UpDown(Container& parent, const Design& design, TextBox& buddy, int min, int max);
  std::string_view TypeName() const override { return "UpDown"; }

  TextBox& buddy() const { return buddy_; }
  int min() const { return min_; }
  int max() const { return max_; }
  Property<int> value;  ///< A value outside the range is replaced by the nearest limit.
  /// For the window system: stores the value after a step by the user. The caller then raises `change`.
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
  /// A name that the window system knows ("mail", "key 3", "logo"), or "file:" followed by the path of a
  /// picture file. If the name is unknown or the file cannot be loaded, nothing is shown.
  Property<std::string> picture;
  Event<> click;
};

/// A straight line.
class Line : public Control {
 public:
  /// The line goes from the upper left corner of the design's rectangle to the lower right corner.
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
  std::int16_t icon = 0;  ///< Number of the menu icon.
  friend bool operator==(const ListItem&, const ListItem&) = default;
};

/// A list of items, each with an icon and a text.
class ListView : public Control {
 public:
  ListView(Container& parent, const Design& design) : Control(parent, design) {}
  std::string_view TypeName() const override { return "ListView"; }

  const std::vector<ListItem>& Items() const { return items_; }
  void Clear();
  void Add(ListItem item);

  /// The number of the selected item, counted from 1. 0: none.
  Property<int> selected{*this, Change::Selection, 0};
  /// The spacing of the icons in pixels: horizontal in the low 16 bits, vertical in the high 16 bits. The
  /// values apply to a font of 8 points and are scaled with the font size.
  Property<std::uint32_t> iconSpacing{*this, Change::Spacing, 0};
  Event<char> keyPress;  ///< The user has typed a character. Not raised for the arrow keys.
  Event<> doubleClick;

 private:
  std::vector<ListItem> items_;
};

/// A list of texts.
class ListBox : public Control {
 public:
  ListBox(Container& parent, const Design& design) : Control(parent, design) {}
  std::string_view TypeName() const override { return "ListBox"; }

  const std::vector<std::string>& Items() const { return items_; }
  void Clear();
  void AddItem(std::string text);

  /// The index of the selected item, counted from 0. -1: none.
  Property<int> listIndex{*this, Change::Selection, -1};
  Event<char> keyPress;
  Event<> doubleClick;

 private:
  std::vector<std::string> items_;
};

/// A closed list of texts that shows one of them and opens to let the user choose another.
class ComboBox : public Control {
 public:
  ComboBox(Container& parent, const Design& design) : Control(parent, design) {}
  std::string_view TypeName() const override { return "ComboBox"; }

  const std::vector<std::string>& Items() const { return items_; }
  /// Replaces all items. None is selected afterwards.
  void SetItems(std::vector<std::string> items);

  /// The index of the item that is shown, counted from 0. -1: none.
  Property<int> listIndex{*this, Change::Selection, -1};
  /// The text that is shown. Empty if no item is selected.
  std::string Text() const;
  Event<> click;  ///< The user has chosen an item, perhaps the same as before.

 private:
  std::vector<std::string> items_;
};

/// An invisible control that takes the keyboard focus and reports typed keys. Each key is reported as a text
/// of one or two characters.
class KeySource : public Control {
 public:
  KeySource(Container& parent, const Design& design) : Control(parent, design) {}
  std::string_view TypeName() const override { return "KeySource"; }
  Event<std::string_view> keys;
};

/// A row of tabs. The logic shows the content of the selected tab.
class TabStrip : public Control {
 public:
  TabStrip(Container& parent, const Design& design, std::vector<std::string> tabs)
      : Control(parent, design), captions(std::move(tabs)) {}
  std::string_view TypeName() const override { return "TabStrip"; }
  const std::vector<std::string> captions;
  Property<int> selected{*this, Change::Selection, 1};  ///< Number of the tab, counted from 1.
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
  MenuItem* menu() const { return menu_; }  ///< The menu of this entry. Null in the menu bar.
  Property<std::string> caption;            ///< "-": a separator line.
  Property<bool> checked{*this, Change::Checked, false};
  /// The keyboard shortcut, for example "Ctrl+P". It is only displayed. The form's keyDown handles the keys,
  /// because only the logic knows when keys belong to the modem.
  const std::string shortcut;
  Event<> click;

  /// Opens this menu at the place where the user has asked for it, as a context menu. Returns at once. A menu
  /// that is used only in this way is not visible, so that the menu bar does not show it.
  void PopUp() {
    ++popUps_;
    Changed(Change::PopUp);
  }
  int PopUps() const { return popUps_; }  ///< The number of calls of PopUp.

 private:
  MenuItem(Form& form, MenuItem* menu, const Design& design)
      : Control(form, design),
        caption{*this, Change::Caption, std::string(design.caption)},
        shortcut(design.shortcut),
        menu_(menu) {
    form.hasMenuBar_ = true;
  }
  MenuItem* menu_;
  int popUps_ = 0;
};

/// Raises `tick` every `interval` milliseconds while enabled. The next interval begins when the handler has
/// returned, so a handler that waits is never called again during its own wait. The handler may destroy the
/// timer, alone or with the form, and continue.
class Timer : public Control {
  /// The state of a running tick. It exists until the handler returns, even if the timer is destroyed before.
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
