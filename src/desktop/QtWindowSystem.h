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

/// Shows forms, each in a FormWindow, and lets them see keys before any widget does.
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
  /// The window that a question to the user belongs to: the active one, or else any that is shown.
  QWidget* FrontWindow() const;
  /// Closes open menus, and modal windows as their close boxes do.
  void CallOff();
  /// The window that shows a form; none if it is not attached.
  FormWindow* WindowOf(const Form& form) const;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  EventLoop& loop_;
  std::string title_;
  std::unordered_map<const Form*, QPointer<FormWindow>> windows_;
  std::vector<QPointer<QWidget>> made_;  ///< Those of forms that have gone included, until they are deleted.
};

}  // namespace corvex
