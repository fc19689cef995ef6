#pragma once

#include <QMouseEvent>
#include <QPixmap>
#include <QWidget>
#include <functional>
#include <string>
#include <utility>

#include "forms/Control.h"

namespace corvex {

/// A widget that can be clicked but is not one of Qt's buttons.
template <typename Base>
class Clickable : public Base {
 public:
  using Base::Base;
  std::function<void()> clicked;
  /// If true, a double click counts as two clicks, as on a button. If false, it counts as one, even if its
  /// first press was on another widget: the first click may have changed the screen, and the second is not
  /// meant for the new contents.
  bool countsEachPress = true;

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    event->accept();
    if (event->button() == Qt::LeftButton) pressed_ = true;
  }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    event->accept();
    if (event->button() == Qt::LeftButton) pressed_ = countsEachPress;
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton || !std::exchange(pressed_, false)) return;
    if (this->rect().contains(event->position().toPoint()) && clicked) clicked();
  }

 private:
  bool pressed_ = false;
};

/// Shows a picture by name or from a file, as large as fits.
class Picture : public Clickable<QWidget> {
 public:
  Picture(Look look, QWidget* parent) : Clickable(parent), look_(look) {}
  void SetName(const std::string& name);
  /// Sets whether a click has an effect. If so, the picture reacts to the pointer, and screen readers treat
  /// it as a button.
  void SetButton(bool button);
  bool IsButton() const { return button_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Look look_;
  bool button_ = false;
  std::string name_;
  QPixmap file_;
};

}  // namespace corvex
