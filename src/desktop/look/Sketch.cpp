#include "desktop/look/Sketch.h"

#include <QPainter>
#include <QPen>
#include <QPolygonF>
#include <QTransform>
#include <algorithm>
#include <cmath>

namespace corvex {

namespace {

constexpr qreal kUnits = 24;
constexpr qreal kStroke = 1.8;

}  // namespace

Sketch::Sketch(QPainter& painter, const QRectF& rect, const QPalette& palette)
    : painter_(painter), ink_(palette.color(QPalette::Text)), accent_(palette.color(QPalette::Link)) {
  painter_.save();
  painter_.setRenderHint(QPainter::Antialiasing);
  const QTransform toScreen = painter_.deviceTransform();
  const qreal density = toScreen.m11();
  const qreal side = std::min(rect.width(), rect.height());
  const QPointF corner = rect.center() - QPointF(side / 2, side / 2);
  const QPointF onScreen = toScreen.map(corner);
  painter_.translate(corner + (QPointF(onScreen.toPoint()) - onScreen) / density);
  painter_.scale(side / kUnits, side / kUnits);
  pixels_ = side * density / kUnits;
  stroke_ = std::max(1, qRound(kStroke * pixels_));
  Ink();
}

Sketch::~Sketch() {
  painter_.restore();
}

Sketch& Sketch::Ink() {
  return Use(ink_);
}

Sketch& Sketch::Accent() {
  return Use(accent_);
}

Sketch& Sketch::Tinted() {
  Use(ink_);
  QColor tint = accent_;
  tint.setAlphaF(0.22F);
  painter_.setBrush(tint);
  return *this;
}

Sketch& Sketch::Use(const QColor& color) {
  color_ = color;
  painter_.setPen(QPen(color, stroke_ / pixels_, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter_.setBrush(Qt::NoBrush);
  return *this;
}

QPointF Sketch::Snap(QPointF point) const {
  // A line of odd width is sharp when centred on a row of pixels, a line of even width when centred between
  // two rows.
  const auto snap = [this](qreal v) {
    return (stroke_ % 2 == 1 ? std::floor(v * pixels_) + 0.5 : std::round(v * pixels_)) / pixels_;
  };
  return {snap(point.x()), snap(point.y())};
}

QRectF Sketch::Around(qreal x, qreal y, qreal across, qreal down) const {
  return {Snap({x - across, y - down}), Snap({x + across, y + down})};
}

Sketch& Sketch::Line(std::initializer_list<QPointF> points) {
  QPolygonF line;
  for (const QPointF& point : points) line << Snap(point);
  painter_.drawPolyline(line);
  return *this;
}

Sketch& Sketch::Shape(std::initializer_list<QPointF> points) {
  QPolygonF shape;
  for (const QPointF& point : points) shape << Snap(point);
  painter_.drawPolygon(shape);
  return *this;
}

Sketch& Sketch::Box(qreal x, qreal y, qreal w, qreal h, qreal round) {
  painter_.drawRoundedRect(QRectF(Snap({x, y}), Snap({x + w, y + h})), round, round);
  return *this;
}

Sketch& Sketch::Oval(qreal x, qreal y, qreal across, qreal down) {
  painter_.drawEllipse(Around(x, y, across, down));
  return *this;
}

Sketch& Sketch::Dot(qreal x, qreal y, qreal radius) {
  painter_.save();
  painter_.setBrush(color_);
  painter_.setPen(Qt::NoPen);
  painter_.drawEllipse(QPointF(x, y), radius, radius);
  painter_.restore();
  return *this;
}

Sketch& Sketch::Arc(qreal x, qreal y, qreal radius, int from, int span) {
  painter_.drawArc(Around(x, y, radius, radius), from * 16, span * 16);
  return *this;
}

Sketch& Sketch::Pie(qreal x, qreal y, qreal radius, int from, int span) {
  painter_.save();
  painter_.setBrush(color_);
  painter_.setPen(Qt::NoPen);
  painter_.drawPie(Around(x, y, radius, radius), from * 16, span * 16);
  painter_.restore();
  return *this;
}

}  // namespace corvex
