#pragma once

#include <QObject>
#include <QString>
#include <cstdint>
#include <memory>

#include "forms/Bars.h"
#include "forms/Controls.h"
#include "forms/TreeView.h"

class QWidget;

namespace corvex {

class FormWindow;

/// A set of changes to one control or form.
class Changes {
 public:
  void Add(Change change) { bits_ |= static_cast<std::uint32_t>(change); }
  bool Has(Change change) const { return (bits_ & static_cast<std::uint32_t>(change)) != 0; }
  bool Any() const { return bits_ != 0; }
  static Changes All() {
    Changes all;
    all.bits_ = ~0U;
    return all;
  }

 private:
  std::uint32_t bits_ = 0;
};

/// Shows one control of a form. The window collects changes in `pending` and applies them once per turn of
/// the event loop. Actions of the user go to the core through the window. A view accesses its control only
/// while the form exists.
class ControlView : public QObject {
 public:
  /// Applies changes of content, geometry and appearance, but not of visibility, order and focus. The window
  /// applies those to all its views afterwards, in this order.
  virtual void Apply(const Changes& changes) = 0;
  virtual void ApplyVisible() = 0;
  /// Called immediately for each edit of a text box, before its text changes: `inserted` is to replace
  /// `removed` bytes at `position`.
  virtual void TextEdited(std::size_t /*position*/, std::size_t /*removed*/, std::string_view /*inserted*/) {}

  /// The widget that shows the control, or null if there is none, as for menus.
  QWidget* widget() const { return widget_; }
  virtual Control& control() const = 0;
  /// Returns true if the control has the keyboard focus while `focused` has it.
  virtual bool HasFocusIn(const QWidget* focused) const { return widget_ == focused; }

  Changes pending = Changes::All();

 protected:
  QWidget* widget_ = nullptr;
};

/// Creates the view for a control, depending on its kind. Returns null for a kind with nothing to show.
std::unique_ptr<ControlView> MakeControlView(FormWindow& window, Control& control);

/// Returns the label that is declared directly before the control in the same container, or null.
const Label* LabelBefore(const Control& control);
/// Returns the accessible name for a control without its own text: the caption of the label before it, or
/// empty if there is none.
QString NameByLabel(const Control& control);

/// Creates the view for a menu or for an entry of a menu.
std::unique_ptr<ControlView> MakeMenuView(FormWindow& window, MenuItem& item);
std::unique_ptr<ControlView> MakeUpDownView(FormWindow& window, UpDown& arrows);
std::unique_ptr<ControlView> MakeTextBoxView(FormWindow& window, TextBox& box);
std::unique_ptr<ControlView> MakeListView(FormWindow& window, ListView& list);
std::unique_ptr<ControlView> MakeListBoxView(FormWindow& window, ListBox& list);
std::unique_ptr<ControlView> MakeTreeView(FormWindow& window, TreeView& tree);
std::unique_ptr<ControlView> MakeComboBoxView(FormWindow& window, ComboBox& box);
std::unique_ptr<ControlView> MakeToolBarView(FormWindow& window, ToolBar& bar);
std::unique_ptr<ControlView> MakeStatusBarView(FormWindow& window, StatusBar& bar);
std::unique_ptr<ControlView> MakeProgressBarView(FormWindow& window, ProgressBar& bar);
std::unique_ptr<ControlView> MakeKeySourceView(FormWindow& window, KeySource& source);

}  // namespace corvex
