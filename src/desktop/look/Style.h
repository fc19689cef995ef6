#pragma once

#include <QProxyStyle>

namespace corvex {

/// The Fusion style with these changes:
/// - Buttons look like the keys of an instrument, and tabs are flat.
/// - Marks and frames stand out from their background in the dark palette too.
/// - The widget with the keyboard focus has a ring in the accent colour, however it got the focus.
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
  /// Check marks and radio marks grow with the font of the text beside them.
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
};

/// Draws the focus ring just inside `rect`.
void DrawFocusRing(QPainter& painter, const QRectF& rect, const QPalette& palette);

/// Draws the background of an indicator.
void DrawIndicator(QPainter& painter, const QRectF& rect, const QPalette& palette);
/// Returns the place of an indicator's picture: `alone`, or before a text.
QRect IndicatorIcon(const QRect& indicator, bool alone);

/// Draws the background of an item under the pointer.
void DrawHover(QPainter& painter, const QRectF& rect, const QPalette& palette);
/// Draws the background of a selected item.
void DrawSelection(QPainter& painter, const QRectF& rect, const QPalette& palette);

}  // namespace corvex
