#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "forms/Controls.h"
#include "support/FakePlatform.h"

namespace corvex::test {

/// The user of a modal window. Acts as the window system does: a mouse click moves the focus first.
class ModalUser {
 public:
  ModalUser(Form& form, FakePlatform& platform) : form_(form), platform_(platform) {}

  /// Opens the window, runs the steps, and closes the window if it is still open. Returns the texts of all
  /// message boxes. Steps are separated by "; ":
  /// "txtName=AB"    types a text, chooses an item of a combo box, or sets a check box ("yes", "no")
  /// "cmdTop1"       clicks a button; the number is its index
  /// "@comboDECT0"   moves the focus
  /// "enter", "esc", "close"
  template <typename Open>
  std::string Run(Open open, std::string_view steps, const std::function<void()>& look = {}) {
    platform_.dialogs.shown.clear();
    form_.loop().Post([this, steps, look] {
      platform_.loop.Run(0);
      for (std::string_view rest = steps; !rest.empty();) {
        const std::size_t end = std::min(rest.find("; "), rest.size());
        Do(rest.substr(0, end));
        platform_.loop.Run(0);
        rest.remove_prefix(std::min(end + 2, rest.size()));
      }
      stillOpen = form_.visible;
      if (look) look();
      if (form_.visible) form_.queryUnload();
    });
    open();
    std::string boxes;
    for (const std::string& text : platform_.dialogs.shown) boxes += (boxes.empty() ? "" : "|") + text;
    return boxes;
  }

  Control& Find(std::string_view name) const {
    for (Control* control : form_.controls()) {
      const std::string index = control->index() < 0 ? "" : std::to_string(control->index());
      if (control->name() + index == name) return *control;
    }
    throw std::runtime_error("no control " + std::string(name));
  }

  bool stillOpen = false;  ///< The steps of the last run have not closed the window.

  /// Does one step.
  void Do(std::string_view step) {
    const std::size_t equals = step.find('=');
    if (equals != step.npos) return Put(Find(step.substr(0, equals)), step.substr(equals + 1));
    if (step.starts_with('@')) return Focus(Find(step.substr(1)));
    if (step == "close") return form_.queryUnload();
    if (step == "enter" || step == "esc") {
      KeyEvent key{.keyCode = step == "enter" ? 13 : 27};
      return form_.TakeKey(key);
    }
    auto& button = dynamic_cast<Button&>(Find(step));
    Focus(button);
    button.click();
  }

 private:
  void Focus(Control& control) {
    Control* const left = form_.Focused();
    if (left == &control) return;
    form_.AdoptFocus(&control);
    form_.RaiseFocusEvents(left, &control);
  }
  static void Put(Control& control, std::string_view value) {
    if (auto* text = dynamic_cast<TextBox*>(&control)) {
      text->AdoptText(std::string(value));
      text->change();
    } else if (auto* check = dynamic_cast<CheckBox*>(&control)) {
      check->value.Adopt(value == "yes");
      check->click();
    } else {
      auto& combo = dynamic_cast<ComboBox&>(control);
      const auto& items = combo.Items();
      const auto item = std::find(items.begin(), items.end(), value);
      if (item == items.end()) throw std::runtime_error("no item " + std::string(value));
      combo.listIndex.Adopt(static_cast<int>(item - items.begin()));
      combo.click();
    }
  }

  Form& form_;
  FakePlatform& platform_;
};

}  // namespace corvex::test
