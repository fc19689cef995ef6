#pragma once

#include <QMouseEvent>
#include <QPixmap>
#include <QWidget>
#include <functional>
#include <string>
#include <utility>

#include "forms/Control.h"

namespace corvex {

/// Widget for something that is clicked but is no button to Qt.
template <typename Base>
class Clickable : public Base {
 public:
  using Base::Base;
  std::function<void()> clicked;
  /// Whether the second press of a double click counts, as it does on a button. Else a double click is one
  /// click, wherever its first press was: what that has changed on the screen is not meant by the second.
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

/// A picture by name, or from a file, as large as fits.
class Picture : public Clickable<QWidget> {
 public:
  Picture(Look look, QWidget* parent) : Clickable(parent), look_(look) {}
  void SetName(const std::string& name);
  /// Whether a click on it does something: then it answers to the pointer, and is a button to a screen
  /// reader.
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
