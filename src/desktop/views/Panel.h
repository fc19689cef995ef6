#pragma once

#include <QWidget>

#include "forms/Control.h"

namespace corvex {

/// A container with its own background. The background depends on the look; a plain panel with a title
/// is painted as a group.
class Panel : public QWidget {
 public:
  Panel(Look look, QWidget* parent);
  void SetDimmed(bool dimmed);
  void SetTitle(const QString& title);
  const QString& title() const { return title_; }
  Look look() const { return look_; }

  /// Returns the text of the panel for a screen reader: its visible labels, one per line. Labels with an
  /// accessible name of their own are left out.
  QString ReadableText() const;
  /// Reports to screen readers that the readable text has changed, once per turn of the event loop. Does so
  /// only for the modem's screen and for popups.
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
