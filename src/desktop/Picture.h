#pragma once

#include <QMouseEvent>
#include <QPixmap>
#include <QWidget>
#include <functional>
#include <string>

#include "forms/Control.h"

namespace corvex {

/// Widget for something that is clicked but is no button to Qt.
template <typename Base>
class Clickable : public Base {
 public:
  using Base::Base;
  std::function<void()> clicked;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton && this->rect().contains(event->position().toPoint()) && clicked) {
      clicked();
    }
  }
  void mousePressEvent(QMouseEvent* event) override { event->accept(); }
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
