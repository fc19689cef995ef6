#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/Services.h"

namespace corvex {

class FormWindow;

/// Shows each form in a FormWindow. A form receives key events before any widget does.
class QtWindowSystem : public QObject, public WindowSystem {
 public:
  explicit QtWindowSystem(EventLoop& loop);
  ~QtWindowSystem() override;

  void Attach(Form& form) override;
  void Detach(Form& form) override;
  std::int32_t ScreenWidth() const override;
  Rect WorkArea() const override;
  void SetApplicationTitle(const std::string& title) override { title_ = title; }

  const std::string& applicationTitle() const { return title_; }
  /// Returns the window to use as parent of a dialog: the active window, otherwise a modal window, otherwise
  /// the newest visible window; null if no window is visible.
  QWidget* FrontWindow() const;
  /// Closes open menus and modal windows. A modal window is closed as if the user had clicked its close
  /// button.
  void CallOff();
  /// Returns the window that shows a form, or null if the form is not attached.
  FormWindow* WindowOf(const Form& form) const;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  EventLoop& loop_;
  std::string title_;
  std::unordered_map<const Form*, QPointer<FormWindow>> windows_;
  std::vector<QPointer<QWidget>> made_;  ///< Includes windows of destroyed forms until Qt deletes them.
};

}  // namespace corvex
