#pragma once

#include <QWidget>

#include "forms/Control.h"

namespace corvex {

/// A container with a ground of its own: bare, a group if it has a title, or what its look says.
class Panel : public QWidget {
 public:
  Panel(Look look, QWidget* parent);
  void SetDimmed(bool dimmed);
  void SetTitle(const QString& title);
  const QString& title() const { return title_; }
  Look look() const { return look_; }

  /// What can be read on it, its texts from the top on: for a screen reader.
  QString ReadableText() const;
  /// Such a text has changed. Of the modem's screen and of a popup that is told, once for each turn of the
  /// event loop.
  void Announce();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void PaintScreen(QPainter& painter) const;
  void PaintPopUp(QPainter& painter) const;
  void PaintWindow(QPainter& painter) const;
  void PaintGroup(QPainter& painter) const;
  void PaintTitle(QPainter& painter, const QRect& place) const;

  Look look_;
  QString title_;
  bool announced_ = false;
};

}  // namespace corvex
