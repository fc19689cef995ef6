#include "forms/FileBrowser.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <limits>
#include <optional>
#include <vector>

#include "base/Text.h"

namespace corvex {

namespace {

constexpr int kDown = 40;
constexpr std::string_view kDefaultFilter = "*.*";
/// The root folder. The preferred separator shows whether the system is Windows.
constexpr std::string_view kDefaultFolder = std::filesystem::path::preferred_separator == '\\' ? "C:\\" : "/";
constexpr std::string_view kDefaultTitle = "Open";

std::int16_t Short(std::size_t number) {
  constexpr std::size_t kMost = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::min(number, kMost));
}

/// The value of a property in the bag, or nullopt.
std::optional<std::string_view> Find(const PropertyBag& bag, std::string_view name) {
  const auto found = bag.find(name);
  if (found == bag.end()) return std::nullopt;
  return found->second;
}

std::string ReadText(const PropertyBag& bag, std::string_view name, std::string_view fallback = {}) {
  return std::string(Find(bag, name).value_or(fallback));
}

bool ReadTruth(const PropertyBag& bag, std::string_view name, bool fallback) {
  const auto text = Find(bag, name);
  return text == "yes" || (text != "no" && fallback);
}

std::int16_t ReadShort(const PropertyBag& bag, std::string_view name) {
  return ToInt16(Find(bag, name).value_or("")).value_or(0);
}

// A colour is stored as a signed 32-bit number.
Color ReadColor(const PropertyBag& bag, std::string_view name, Color fallback) {
  const auto number = ToInt32(Find(bag, name).value_or(""));
  return number && *number <= 0xFFFFFF ? static_cast<Color>(*number) : fallback;
}

std::string ColorText(Color color) {
  return std::to_string(static_cast<std::int32_t>(color));
}

// A font is stored as its name, its size and the styles that apply: "Courier,12,bold,italic,underline".
Font ReadFont(const PropertyBag& bag, std::string_view name, const Font& fallback) {
  const auto text = Find(bag, name);
  if (!text) return fallback;
  Fields fields(*text, ',');
  Font font{.name = std::string(fields.Next())};
  const std::string_view size = fields.Next();
  font.size = IsNumeric(size) ? NumericPrefix(size) : 0;
  if (font.size < 1 || font.size > std::numeric_limits<std::int16_t>::max()) return fallback;
  while (fields.More()) {
    const std::string_view word = fields.Next();
    font.bold = font.bold || word == "bold";
    font.italic = font.italic || word == "italic";
    font.underline = font.underline || word == "underline";
  }
  return font;
}

std::string FontText(const Font& font) {
  char size[32];
  const auto end = std::to_chars(size, size + sizeof size, font.size).ptr;
  return font.name + ',' + std::string(size, end) + (font.bold ? ",bold" : "") +
         (font.italic ? ",italic" : "") + (font.underline ? ",underline" : "");
}

void Write(PropertyBag& bag, std::string_view name, const std::string& text, std::string_view fallback) {
  if (text == fallback) {
    bag.erase(std::string(name));
  } else {
    bag.insert_or_assign(std::string(name), text);
  }
}

}  // namespace

FileBrowser::FileBrowser(Container& parent, const Design& design, Dialogs& dialogs)
    : Frame(parent, design),
      dialogs_(dialogs),
      ambientFont_(design.font),
      filter_(kDefaultFilter),
      initDir_(kDefaultFolder),
      title_(kDefaultTitle) {
  txtFolder.font = design.font;
  txtFolder.toolTip = std::string(design.toolTip);
  txtFolder.enabled = design.enabled;
  cmdBrowse.enabled = design.enabled;
  txtFolder.change = [this] { TextHasChanged(); };
  cmdBrowse.click = [this] { Browse(); };
  drop = [this](const Drop&) { dialogs_.MessageBox("hello"); };  // Intentional: a drop does nothing else.
  txtFolder.drop = [this](const Drop& dropped) { drop(dropped); };
  Place();
}

void FileBrowser::Changed(Change what) {
  Frame::Changed(what);
  switch (what) {
    case Change::Rect:
      Place();
      break;
    case Change::ToolTip:
      txtFolder.toolTip = toolTip.Get();
      break;
    case Change::Enabled:
      txtFolder.enabled = enabled.Get();
      cmdBrowse.enabled = enabled.Get();
      propertyChanged("Enabled");
      break;
    case Change::Font:
      txtFolder.font = font.Get();
      propertyChanged("Font");
      break;
    default:
      break;
  }
}

void FileBrowser::Place() {
  const Rect& own = rect;
  const Twips button = cmdBrowse.rect.Get().width;
  cmdBrowse.rect = Rect{own.width - button, 0, button, own.height};
  txtFolder.rect = Rect{0, 0, std::max(own.width - button, 0), own.height};
}

void FileBrowser::TextHasChanged() {
  propertyChanged("Text");
  change();
}

void FileBrowser::SetText(std::string_view text) {
  if (txtFolder.Text() == text) return;
  txtFolder.SetText(text);
  txtFolder.selection = TextBox::Selection{};
  TextHasChanged();
}

std::int16_t FileBrowser::SelStart() const {
  return Short(std::min(txtFolder.selection.Get().start, txtFolder.Text().size()));
}

void FileBrowser::SetSelStart(std::int16_t start) {
  const std::size_t limited =
      std::min<std::size_t>(std::max<std::int16_t>(start, 0), txtFolder.Text().size());
  Set("SelStart", txtFolder.selection, TextBox::Selection{limited, 0});
}

std::int16_t FileBrowser::SelLength() const {
  return Short(txtFolder.SelText().size());
}

void FileBrowser::SetSelLength(std::int16_t length) {
  const std::size_t start = static_cast<std::size_t>(SelStart());
  const std::size_t limited =
      std::min<std::size_t>(std::max<std::int16_t>(length, 0), txtFolder.Text().size() - start);
  Set("SelLength", txtFolder.selection, TextBox::Selection{start, limited});
}

void FileBrowser::SetSelText(std::string_view text) {
  const std::size_t start = std::min(txtFolder.selection.Get().start, txtFolder.Text().size());
  txtFolder.Edit(start, txtFolder.SelText().size(), text);
  txtFolder.selection = TextBox::Selection{start + text.size(), 0};
  propertyChanged("SelText");
  TextHasChanged();
}

void FileBrowser::ReadProperties(const PropertyBag& bag) {
  SetBackColor(ReadColor(bag, "BackColor", kWindowColor));
  SetForeColor(ReadColor(bag, "ForeColor", kWindowTextColor));
  enabled = ReadTruth(bag, "Enabled", true);
  font = ReadFont(bag, "Font", ambientFont_);
  SetLocked(ReadTruth(bag, "Locked", false));
  // Set the text before the selection, because the selection is limited to the text.
  SetText(ReadText(bag, "Text"));
  SetSelStart(ReadShort(bag, "SelStart"));
  SetSelLength(ReadShort(bag, "SelLength"));
  if (const auto text = Find(bag, "SelText"); text && *text != txtFolder.SelText()) SetSelText(*text);
  SetFileDialogType(ToInt32(Find(bag, "FileDialogType").value_or("")).value_or(0));
  SetFilter(ReadText(bag, "Filter", kDefaultFilter));
  SetInitDir(ReadText(bag, "InitDir", kDefaultFolder));
  SetTitle(ReadText(bag, "Title", kDefaultTitle));
}

void FileBrowser::WriteProperties(PropertyBag& bag) const {
  const auto truth = [](bool value) -> std::string { return value ? "yes" : "no"; };
  Write(bag, "BackColor", ColorText(BackColor()), ColorText(kWindowColor));
  Write(bag, "ForeColor", ColorText(ForeColor()), ColorText(kWindowTextColor));
  Write(bag, "Enabled", truth(enabled), "yes");
  Write(bag, "Font", FontText(font), FontText(ambientFont_));
  Write(bag, "Locked", truth(Locked()), "no");
  Write(bag, "SelLength", std::to_string(SelLength()), "0");
  Write(bag, "SelStart", std::to_string(SelStart()), "0");
  Write(bag, "SelText", SelText(), "");
  Write(bag, "Text", Text(), "");
  Write(bag, "FileDialogType", std::to_string(FileDialogType()), "0");
  Write(bag, "Filter", Filter(), kDefaultFilter);
  Write(bag, "InitDir", InitDir(), kDefaultFolder);
  Write(bag, "Title", Title(), kDefaultTitle);
}

void FileBrowser::Browse() {
  cmdBrowse.SetFocus();
  const FileQuestion question{.title = title_,
                              .filter = filter_,
                              .start = initDir_,
                              .owner = &form(),
                              .asksBeforeNew = fileDialogType_ != 0};
  const auto path = fileDialogType_ == 0 ? dialogs_.OpenFile(question) : dialogs_.SaveFile(question);
  // If the user gave no answer, the window may have been destroyed. Do not access any member.
  if (!path) return;
  const std::string_view trimmed = TrimBlanks(*path);
  if (!trimmed.empty()) SetText(trimmed);
}

void FileBrowser::TakeKey(KeyEvent& key) {
  const bool altDown = key.keyCode == kDown && key.alt && !key.ctrl && !key.shift;
  if (!altDown || !(txtFolder.HasFocus() || cmdBrowse.HasFocus())) return;
  key.handled = true;
  Browse();
}

}  // namespace corvex
