#pragma once

#include <QWidget>

#include "forms/Control.h"

namespace corvex {

/// A container with a background of its own: bare, or framed if it has a title or a look.
class Panel : public QWidget {
 public:
  Panel(Look look, QWidget* parent);
  void SetTitle(const QString& title);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Look look_;
  QString title_;
};

}  // namespace corvex
