#pragma once

#include <QProxyStyle>

namespace corvex {

/// The Fusion style, with buttons like the keys of an instrument, flat tabs, marks and frames that can be
/// told from their ground in the dark too, and a ring in the accent colour around what has the keyboard
/// focus, however it came there.
class Style : public QProxyStyle {
 public:
  Style();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override;
  /// Marks grow with the font of the text beside them.
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
};

/// The ring around what has the focus, just within `rect`.
void DrawFocusRing(QPainter& painter, const QRectF& rect, const QPalette& palette);

/// Ground of one in a row of indicators, and where its picture stands: before a text, or alone.
void DrawIndicator(QPainter& painter, const QRectF& rect, const QPalette& palette);
QRect IndicatorIcon(const QRect& indicator, bool alone);

/// Ground behind what the pointer is over, or behind what is selected.
void DrawHover(QPainter& painter, const QRectF& rect, const QPalette& palette);
void DrawSelection(QPainter& painter, const QRectF& rect, const QPalette& palette);

}  // namespace corvex
