#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "forms/Controls.h"
#include "platform/Services.h"

namespace corvex {

/// Stored properties of a control: the values as texts, by property name.
using PropertyBag = std::map<std::string, std::string, std::less<>>;

/// A text box for the path of a file, with a button that opens a file dialog. The control's `font` and
/// `toolTip` apply to the text box, and `enabled` applies to the text box and the button.
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

  // The selection in the text box. Positions and lengths are limited to the text and to 32,767.
  std::int16_t SelStart() const;
  void SetSelStart(std::int16_t start);  ///< Moves the caret. Nothing is selected afterwards.
  std::int16_t SelLength() const;
  void SetSelLength(std::int16_t length);
  std::string SelText() const { return std::string(txtFolder.SelText()); }
  void SetSelText(std::string_view text);  ///< Replaces the selected text.

  // Properties of the file dialog.
  std::int32_t FileDialogType() const { return fileDialogType_; }
  /// 0: the user chooses an existing file. Any other value: the user chooses a file to write to.
  void SetFileDialogType(std::int32_t type) { Set("FileDialogType", fileDialogType_, type); }
  const std::string& Filter() const { return filter_; }
  void SetFilter(const std::string& filter) { Set("Filter", filter_, filter); }  ///< See FileQuestion.
  const std::string& InitDir() const { return initDir_; }
  void SetInitDir(const std::string& folder) { Set("InitDir", initDir_, folder); }
  const std::string& Title() const { return title_; }
  void SetTitle(const std::string& title) { Set("Title", title_, title); }

  /// Sets all properties from the bag. A property that is missing or invalid gets its default value.
  void ReadProperties(const PropertyBag& bag);
  /// Writes all properties that differ from their defaults. A property with its default value is removed from
  /// the bag.
  void WriteProperties(PropertyBag& bag) const;

  /// Displays the text box again.
  void Refresh() { txtFolder.Changed(Change::Caption); }
  /// Opens the file dialog and waits for the user's choice.
  void Browse();
  /// Called by the form, which receives keys first. Alt+Down in this control opens the file dialog.
  void TakeKey(KeyEvent& key);

  Event<> change;                           ///< The user or the logic has changed the text.
  Event<std::string_view> propertyChanged;  ///< The property with this name must be saved again.

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
