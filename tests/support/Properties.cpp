#include "support/Properties.h"

#include <algorithm>
#include <functional>
#include <map>
#include <stdexcept>

#include "forms/Bars.h"
#include "forms/TreeView.h"

namespace corvex::test {

namespace {

std::string YesNo(bool holds) {
  return holds ? "yes" : "no";
}

bool Checked(const Control& control) {
  if (const auto* item = dynamic_cast<const MenuItem*>(&control)) return item->checked;
  if (const auto* option = dynamic_cast<const OptionButton*>(&control)) return option->value;
  return dynamic_cast<const CheckBox&>(control).value;
}

std::string Caption(const Control& control) {
  if (const auto* button = dynamic_cast<const Button*>(&control)) return button->caption;
  if (const auto* item = dynamic_cast<const MenuItem*>(&control)) return item->caption;
  return dynamic_cast<const Label&>(control).caption;
}

const TextBox& Box(const Control& control) {
  return dynamic_cast<const TextBox&>(control);
}

std::string Marked(const Control& control) {
  const TextBox::Selection marked = Box(control).selection;
  return std::to_string(marked.start) + ' ' + std::to_string(marked.length);
}

/// The last ten characters.
std::string End(const Control& control) {
  const std::string& text = Box(control).Text();
  return text.substr(text.size() - std::min<std::size_t>(text.size(), 10));
}

std::string Text(const Control& control) {
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) return combo->Text();
  return Box(control).Text();
}

/// The text of the selected node.
std::string Node(const Control& control) {
  const auto& view = dynamic_cast<const TreeView&>(control);
  return view.tree().Has(view.selected) ? view.tree()[view.selected].text : "none";
}

std::string Items(const Control& control) {
  std::string all;
  for (const std::string& item : dynamic_cast<const ComboBox&>(control).Items())
    all += (all.empty() ? "" : "|") + item;
  return all;
}

}  // namespace

std::string PropertyOf(const Control& control, const std::string& name) {
  using C = const Control&;
  static const std::map<std::string, std::function<std::string(C)>> kProperties{
      {"visible", [](C c) { return YesNo(c.visible); }},
      {"enabled", [](C c) { return YesNo(c.enabled); }},
      {"focus", [](C c) { return YesNo(c.HasFocus()); }},
      {"checked", [](C c) { return YesNo(Checked(c)); }},
      {"caption", Caption},
      {"tip", [](C c) { return c.toolTip.Get(); }},
      {"selected", [](C c) { return std::to_string(dynamic_cast<const TabStrip&>(c).selected); }},
      {"title", [](C c) { return dynamic_cast<const Frame&>(c).caption.Get(); }},
      {"panel1", [](C c) { return dynamic_cast<const StatusBar&>(c).Text(1); }},
      {"panel2", [](C c) { return dynamic_cast<const StatusBar&>(c).Text(2); }},
      {"popups", [](C c) { return std::to_string(dynamic_cast<const MenuItem&>(c).PopUps()); }},
      {"node", Node},
      {"items", Items},
      {"left", [](C c) { return std::to_string(c.rect.Get().left); }},
      {"tag", [](C c) { return c.tag; }},
      {"spoken", [](C c) { return c.accessible.Get(); }},
      {"dimmed", [](C c) { return YesNo(dynamic_cast<const Frame&>(c).dimmed); }},
      {"font", [](C c) { return Described(c.font); }},
      {"marked", Marked},
      {"marked-text", [](C c) { return std::string(Box(c).SelText()); }},
      {"default", [](C c) { return YesNo(c.form().defaultButton.Get() == &c); }},
      {"length", [](C c) { return std::to_string(Box(c).Text().size()); }},
      {"end", End},
      {"text", Text},
  };
  const auto found = kProperties.find(name);
  if (found == kProperties.end()) throw std::runtime_error("unknown property " + name);
  return found->second(control);
}

std::string Described(const Font& font) {
  return font.name + ' ' + std::to_string(static_cast<int>(font.size)) + (font.bold ? " bold" : "") +
         (font.italic ? " italic" : "") + (font.underline ? " underline" : "");
}

}  // namespace corvex::test
