#pragma once

#include <QColor>
#include <QPalette>
#include <QPointF>
#include <QRectF>
#include <initializer_list>

class QPainter;

namespace corvex {

/// Draws a picture on a square of 24 by 24 units, scaled to the largest square that fits into a rectangle.
///
/// A picture consists of a few strokes in the text colour, about 1.8 units wide. Its most characteristic part
/// has the accent colour. Stroke widths and positions are rounded to whole screen pixels, so that vertical
/// and horizontal strokes are sharp at every size and density. The destructor restores the painter's state.
class Sketch {
 public:
  Sketch(QPainter& painter, const QRectF& rect, const QPalette& palette);
  ~Sketch();
  Sketch(const Sketch&) = delete;
  Sketch& operator=(const Sketch&) = delete;

  Sketch& Ink();     ///< Switches to the text colour.
  Sketch& Accent();  ///< Switches to the accent colour.
  Sketch& Tinted();  ///< Like Ink, and fills closed shapes with a light tint of the accent colour.

  Sketch& Line(std::initializer_list<QPointF> points);
  Sketch& Shape(std::initializer_list<QPointF> points);  ///< A closed polygon.
  Sketch& Box(qreal x, qreal y, qreal w, qreal h, qreal round = 2);
  Sketch& Ring(qreal x, qreal y, qreal radius) { return Oval(x, y, radius, radius); }
  Sketch& Oval(qreal x, qreal y, qreal across, qreal down);  ///< `across` and `down` are radii.
  Sketch& Dot(qreal x, qreal y, qreal radius = 1.6);
  /// `from` and `span` are in degrees, counter-clockwise from three o'clock.
  Sketch& Arc(qreal x, qreal y, qreal radius, int from, int span);
  Sketch& Pie(qreal x, qreal y, qreal radius, int from, int span);  ///< A filled sector.

 private:
  Sketch& Use(const QColor& color);
  QPointF Snap(QPointF point) const;
  QRectF Around(qreal x, qreal y, qreal across, qreal down) const;

  QPainter& painter_;
  QColor ink_;
  QColor accent_;
  QColor color_;
  qreal pixels_;  ///< Screen pixels per unit.
  int stroke_;    ///< Pen width in screen pixels.
};

}  // namespace corvex
