#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "forms/Controls.h"
#include "platform/Services.h"

namespace corvex {

/// Where a window keeps the properties of its controls: texts by the property's name.
using PropertyBag = std::map<std::string, std::string, std::less<>>;

/// A box for a file's path with a button that lets the user pick the file. `enabled`, `font` and `toolTip` of
/// the control are those of the box too.
class FileBrowser : public Frame {
 public:
  FileBrowser(Container& parent, const Design& design, Dialogs& dialogs);

  // Properties of the text box.
  Color BackColor() const { return txtFolder.backColor; }
  void SetBackColor(Color color) { Set("BackColor", txtFolder.backColor, color); }
  Color ForeColor() const { return txtFolder.foreColor; }
  void SetForeColor(Color color) { Set("ForeColor", txtFolder.foreColor, color); }
  bool Locked() const { return txtFolder.locked; }
  void SetLocked(bool locked) { Set("Locked", txtFolder.locked, locked); }
  std::string Text() const { return txtFolder.Text(); }
  void SetText(std::string_view text);

  // Its selection, within the text and the first 32,767 characters.
  std::int16_t SelStart() const;
  void SetSelStart(std::int16_t start);  ///< Ends the selection there is.
  std::int16_t SelLength() const;
  void SetSelLength(std::int16_t length);
  std::string SelText() const { return std::string(txtFolder.SelText()); }
  void SetSelText(std::string_view text);  ///< Puts a text in the place of the selected one.

  // Properties of the dialog.
  std::int32_t FileDialogType() const { return fileDialogType_; }
  /// 0 picks an existing file, any other value one to write to.
  void SetFileDialogType(std::int32_t type) { Set("FileDialogType", fileDialogType_, type); }
  const std::string& Filter() const { return filter_; }
  void SetFilter(const std::string& filter) { Set("Filter", filter_, filter); }  ///< See FileQuestion.
  const std::string& InitDir() const { return initDir_; }
  void SetInitDir(const std::string& folder) { Set("InitDir", initDir_, folder); }
  const std::string& Title() const { return title_; }
  void SetTitle(const std::string& title) { Set("Title", title_, title); }

  /// A value that is missing or makes no sense is the default.
  void ReadProperties(const PropertyBag& bag);
  /// Values at their defaults are left out.
  void WriteProperties(PropertyBag& bag) const;

  /// Shows the box anew.
  void Refresh() { txtFolder.Changed(Change::Caption); }
  /// Lets the user pick a file, and waits for it.
  void Browse();
  /// For the form, which sees keys first: Alt and Down in this control picks a file.
  void TakeKey(KeyEvent& key);

  Event<> change;                           ///< Of the text, by the user or the logic.
  Event<std::string_view> propertyChanged;  ///< The property of this name is to be written anew.

  void Changed(Change what) override;

  TextBox txtFolder{*this, {.name = "txtFolder"}};
  Button cmdBrowse{*this, {.name = "cmdBrowse", .rect = {0, 0, 375, 0}, .caption = "..."}};

 private:
  template <typename Target, typename Value>
  void Set(std::string_view name, Target& target, const Value& value) {
    if (target == value) return;
    target = value;
    propertyChanged(name);
  }
  void Place();
  void TextHasChanged();

  Dialogs& dialogs_;
  const Font ambientFont_;
  std::int32_t fileDialogType_ = 0;
  std::string filter_;
  std::string initDir_;
  std::string title_;
};

}  // namespace corvex
