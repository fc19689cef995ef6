#pragma once

#include <QObject>
#include <QString>
#include <cstdint>
#include <memory>

#include "forms/Controls.h"

class QWidget;

namespace corvex {

class FormWindow;

/// Several changes of one thing, gathered.
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

/// Shows one control of a form. The window gathers what changes in `pending` and has it applied once a turn;
/// what the user does is handed to the core through the window. It touches its control only while the form is
/// there.
class ControlView : public QObject {
 public:
  /// Content, place and looks; all but visibility, order and focus, which the window applies to all its views
  /// afterwards in that order.
  virtual void Apply(const Changes& changes) = 0;
  virtual void ApplyVisible() = 0;
  /// What of the text box gives way; told at once.
  virtual void TextEdited(std::size_t /*position*/, std::size_t /*removed*/, std::string_view /*inserted*/) {}

  /// The widget that the control is, if it is one.
  QWidget* widget() const { return widget_; }
  virtual Control& control() const = 0;

  Changes pending = Changes::All();

 protected:
  QWidget* widget_ = nullptr;
};

/// The view of a control, by its kind; none for a kind with nothing to show.
std::unique_ptr<ControlView> MakeControlView(FormWindow& window, Control& control);

/// What assistive programs call a control that has no words of its own: the caption of the label right before
/// it in its container, if there is one.
QString NameByLabel(const Control& control);

/// Menus and their entries.
std::unique_ptr<ControlView> MakeMenuView(FormWindow& window, MenuItem& item);
std::unique_ptr<ControlView> MakeUpDownView(FormWindow& window, UpDown& arrows);
std::unique_ptr<ControlView> MakeTextBoxView(FormWindow& window, TextBox& box);
std::unique_ptr<ControlView> MakeListView(FormWindow& window, ListView& list);
std::unique_ptr<ControlView> MakeListBoxView(FormWindow& window, ListBox& list);
std::unique_ptr<ControlView> MakeKeySourceView(FormWindow& window, KeySource& source);

}  // namespace corvex
