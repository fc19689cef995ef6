#pragma once

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "forms/Bars.h"
#include "forms/TreeView.h"
#include "support/Program.h"
#include "support/Script.h"

namespace corvex::test {

/// The user of the program in a script. Acts on controls as the window system does: the new value first, then
/// the event.
class User {
 public:
  /// `settle` runs after each action.
  User(Program& program, std::function<void()> settle) : p_(program), settle_(std::move(settle)) {}

  void Do(const EventLoop::Task& action) {
    p_.Do(action);
    settle_();
  }
  /// Takes a control's name, and its index if one follows, from the front of `words`. "txtRx" is in the main
  /// window, "frmSDI.txtNote" in another, "frmTraceInstance:2.lblText" in the second of that name.
  Control& Find(Words& words) {
    const std::string name = words.at(0);
    const bool indexed =
        words.size() > 1 && IsNumber(words[1]) && Named(name, std::stoi(words[1])) != nullptr;
    Control* control = Named(name, indexed ? std::stoi(words[1]) : -1);
    if (control == nullptr) throw std::runtime_error("no control " + name);
    words.erase(words.begin(), words.begin() + (indexed ? 2 : 1));
    return *control;
  }
  /// The main window for an empty path.
  Form& FormNamed(const std::string& path) {
    if (path.empty()) return p_.term;
    const std::size_t colon = path.find(':');
    int place = colon == path.npos ? 1 : std::stoi(path.substr(colon + 1));
    for (Form* form : p_.windows.attached) {
      if (form->name() == path.substr(0, colon) && --place == 0) return *form;
    }
    throw std::runtime_error("no window " + path);
  }
  bool Shown(const std::string& name) {
    const auto& forms = p_.windows.attached;
    return std::any_of(forms.begin(), forms.end(),
                       [&](Form* form) { return form->name() == name && form->visible; });
  }
  void Click(Control& control) {
    Do([&] { ClickOn(control); });
  }
  void Put(Control& control, const std::string& value) {
    Do([&] { PutValue(control, value); });
  }
  void Focus(Control& control) {
    Do([&] {
      Control* const left = control.form().Focused();
      control.form().AdoptFocus(&control);
      control.form().RaiseFocusEvents(left == &control ? nullptr : left, &control);
    });
  }
  /// A number of characters from a position on.
  void Mark(Words words) {
    auto& box = dynamic_cast<TextBox&>(Find(words));
    box.selection.Adopt({std::stoul(words.at(0)), std::stoul(words.at(1))});
  }
  /// Selects a node of a tree and asks for its context menu.
  void Context(Words words) {
    auto& tree = dynamic_cast<TreeView&>(Find(words));
    if (!words.empty()) Put(tree, words[0]);
    Do([&] { tree.contextMenu(); });
  }
  /// Drops files of the program's folder. A number before them is the effect of the drop.
  void DropFiles(Words& words) {
    Control& control = Find(words);
    Drop drop;
    for (const std::string& word : words) {
      if (IsNumber(word)) {
        drop.effect = std::stoi(word);
      } else {
        drop.files.push_back((p_.folder.Path() / word).string());
      }
    }
    Do([&] { control.drop(drop); });
  }
  void KeyDown(const Words& words) {
    for (const std::string& code : words) {
      if (!IsDigit(code[0])) return;
      KeyEvent key{.keyCode = std::stoi(code),
                   .ctrl = HasWord(words, "ctrl"),
                   .alt = HasWord(words, "alt"),
                   .repeated = HasWord(words, "held")};
      Do([&] { Front().TakeKey(key); });
      EXPECT_EQ(key.handled, !HasWord(words, "goes-on"));
    }
  }
  /// `name`: the window, if it need not be the front one.
  void Window(const std::string& what, const std::string& name) {
    frmTerm& term = p_.term;
    Do([&] {
      if (what == "close") return (name.empty() ? Front() : FormNamed(name)).queryUnload();
      if (what == "close-main") return term.queryUnload();
      if (what == "leave" || what == "activate") return Front().SetActive(what == "activate");
      term.windowState.Adopt(what == "minimise" ? WindowState::Minimized : WindowState::Normal);
      term.resize();
    });
  }
  void Type(std::string_view text) {
    for (const char& c : text) p_.Do([&] { TypeOne(c); });
    settle_();
  }
  void Select(int item) {
    (InChoice() ? p_.term.ListChoice.listIndex : p_.term.ListMenu.selected).Adopt(item);
  }
  void DoubleClick() {
    Do([&] { InChoice() ? p_.term.ListChoice.doubleClick() : p_.term.ListMenu.doubleClick(); });
  }

 private:
  static void Choose(OptionButton& chosen) {
    for (Control* control : chosen.form().controls()) {
      auto* other = dynamic_cast<OptionButton*>(control);
      if (other != nullptr && &other->parent() == &chosen.parent()) other->value.Adopt(other == &chosen);
    }
    chosen.click();
  }
  static void PutValue(Control& control, const std::string& value) {
    if (auto* box = dynamic_cast<TextBox*>(&control)) {
      box->AdoptText(value);
      box->selection.Adopt({value.size(), 0});
      box->change();
    } else if (auto* arrows = dynamic_cast<UpDown*>(&control)) {
      arrows->AdoptValue(arrows->value + std::stoi(value));
      arrows->change();
    } else if (auto* check = dynamic_cast<CheckBox*>(&control)) {
      check->value.Adopt(value == "yes");
      check->click();
    } else if (auto* option = dynamic_cast<OptionButton*>(&control)) {
      option->value.Adopt(value == "yes");
    } else if (auto* combo = dynamic_cast<ComboBox*>(&control)) {
      const auto& items = combo->Items();
      const auto item = std::find(items.begin(), items.end(), value);
      if (item == items.end()) throw std::runtime_error("no item " + value);
      combo->listIndex.Adopt(static_cast<int>(item - items.begin()));
      combo->click();
    } else if (auto* tree = dynamic_cast<TreeView*>(&control)) {
      int node = tree->tree().Count() - 1;
      while (node >= 0 && tree->tree()[node].text != value) --node;
      if (node < 0) throw std::runtime_error("no node " + value);
      tree->selected.Adopt(node);
      tree->nodeClick();
    } else if (auto* bar = dynamic_cast<ToolBar*>(&control)) {
      if (bar->Enabled(std::stoi(value))) bar->buttonClick(std::stoi(value));
    } else {
      auto& tabs = dynamic_cast<TabStrip&>(control);
      tabs.selected.Adopt(std::stoi(value));
      tabs.click();
    }
  }
  static void ClickOn(Control& control) {
    if (auto* button = dynamic_cast<Button*>(&control)) return button->click();
    if (auto* image = dynamic_cast<Image*>(&control)) return image->click();
    if (auto* label = dynamic_cast<Label*>(&control)) return label->click();
    if (auto* item = dynamic_cast<MenuItem*>(&control)) return item->click();
    if (auto* check = dynamic_cast<CheckBox*>(&control))
      return PutValue(control, check->value ? "no" : "yes");
    if (auto* option = dynamic_cast<OptionButton*>(&control)) return Choose(*option);
    throw std::runtime_error("this control cannot be clicked");
  }
  /// The visible window that was shown last.
  Form& Front() {
    const auto& forms = p_.windows.attached;
    const auto front =
        std::find_if(forms.rbegin(), forms.rend(), [](Form* form) { return form->visible.Get(); });
    return front == forms.rend() ? p_.term : **front;
  }
  Control* Named(const std::string& path, int index) {
    const std::size_t dot = path.find('.');
    const std::string name = path.substr(dot == path.npos ? 0 : dot + 1);
    for (Control* control : FormNamed(path.substr(0, dot == path.npos ? 0 : dot)).controls()) {
      if (control->name() == name && control->index() == index) return control;
    }
    return nullptr;
  }
  void TypeOne(const char& c) {
    frmTerm& term = p_.term;
    if (InChoice()) return term.ListChoice.keyPress(c);
    if (term.ListMenu.HasFocus()) return term.ListMenu.keyPress(c);
    term.CorvexFocus1.keys({&c, 1});
  }
  bool InChoice() { return p_.term.ListChoice.HasFocus(); }

  Program& p_;
  std::function<void()> settle_;
};

}  // namespace corvex::test
