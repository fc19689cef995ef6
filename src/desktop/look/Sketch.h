#pragma once

#include <QColor>
#include <QPalette>
#include <QPointF>
#include <QRectF>
#include <initializer_list>

class QPainter;

namespace corvex {

/// Draws a picture on a square of 24 by 24 units, as large as fits into a rectangle: a few strokes of ink
/// about 1.8 units wide, and one part, the one that tells the picture apart, in the accent colour. Strokes
/// and their places are rounded to whole pixels of the screen, so that upright and level ones are sharp at
/// every size and density. The painter is as before when the sketch goes.
class Sketch {
 public:
  Sketch(QPainter& painter, const QRectF& rect, const QPalette& palette);
  ~Sketch();
  Sketch(const Sketch&) = delete;
  Sketch& operator=(const Sketch&) = delete;

  Sketch& Ink();     ///< From here on the colour of text.
  Sketch& Accent();  ///< From here on the accent colour.
  Sketch& Tinted();  ///< As Ink, and what is closed is filled with a trace of the accent colour.

  Sketch& Line(std::initializer_list<QPointF> points);
  Sketch& Shape(std::initializer_list<QPointF> points);  ///< Closed.
  Sketch& Box(qreal x, qreal y, qreal w, qreal h, qreal round = 2);
  Sketch& Ring(qreal x, qreal y, qreal radius) { return Oval(x, y, radius, radius); }
  Sketch& Oval(qreal x, qreal y, qreal across, qreal down);  ///< Two radii.
  Sketch& Dot(qreal x, qreal y, qreal radius = 1.6);
  /// Degrees count from three o'clock, counter-clockwise.
  Sketch& Arc(qreal x, qreal y, qreal radius, int from, int span);
  Sketch& Pie(qreal x, qreal y, qreal radius, int from, int span);  ///< Filled.

 private:
  Sketch& Use(const QColor& color);
  QPointF Snap(QPointF point) const;
  QRectF Around(qreal x, qreal y, qreal across, qreal down) const;

  QPainter& painter_;
  QColor ink_;
  QColor accent_;
  QColor color_;
  qreal pixels_;  ///< Pixels of the screen to the unit.
  int stroke_;    ///< Width of the pen in pixels of the screen.
};

}  // namespace corvex
