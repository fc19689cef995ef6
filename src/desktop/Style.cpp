#include "desktop/Style.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

#include "desktop/Theme.h"

namespace corvex {

namespace {

constexpr qreal kRadius = 4;

QColor Faint(const QPalette& palette, float strength) {
  QColor color = palette.color(QPalette::Link);
  color.setAlphaF(strength);
  return color;
}

void DrawGround(QPainter& painter, const QRectF& rect, const QColor& color) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(rect, kRadius, kRadius);
  painter.restore();
}

/// The cap of a key, which stands out by its lower edge until it is pressed.
void DrawKey(QPainter& painter, const QStyleOption& option) {
  const QPalette& palette = option.palette;
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool pressed = option.state.testFlag(QStyle::State_Sunken);
  const bool hovered = enabled && option.state.testFlag(QStyle::State_MouseOver);
  const QColor button = palette.color(QPalette::Button);
  const QRectF rect = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(enabled ? BorderColor(palette) : EdgeColor(palette));
  if (!enabled) {
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect, kRadius, kRadius);
  } else if (pressed) {
    painter.setBrush(button.darker(112));
    painter.drawRoundedRect(rect, kRadius, kRadius);
  } else {
    painter.setBrush(button.darker(125));
    painter.drawRoundedRect(rect, kRadius, kRadius);
    QLinearGradient cap(rect.topLeft(), rect.bottomLeft());
    cap.setColorAt(0, button.lighter(hovered ? 112 : 107));
    cap.setColorAt(1, hovered ? button.lighter(104) : button);
    painter.setPen(Qt::NoPen);
    painter.setBrush(cap);
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -2.5), kRadius - 1, kRadius - 1);
    if (hovered) {
      painter.setPen(Faint(palette, 0.7F));
      painter.setBrush(Qt::NoBrush);
      painter.drawRoundedRect(rect, kRadius, kRadius);
    }
  }
  painter.restore();
}

void DrawTab(QPainter& painter, const QStyleOption& option) {
  constexpr int kLine = 2;
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  if (!selected && option.state.testFlag(QStyle::State_MouseOver)) {
    DrawHover(painter, option.rect.adjusted(1, 1, -1, -kLine - 1), option.palette);
  }
  if (!selected) return;
  const QRect& rect = option.rect;
  painter.fillRect(QRect(rect.left(), rect.bottom() + 1 - kLine, rect.width(), kLine),
                   option.palette.color(QPalette::Link));
}

}  // namespace

void DrawFocusRing(QPainter& painter, const QRectF& rect, const QPalette& palette) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette.color(QPalette::Link), 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), kRadius - 1, kRadius - 1);
  painter.restore();
}

void DrawIndicator(QPainter& painter, const QRectF& rect, const QPalette& palette) {
  DrawGround(painter, rect, palette.color(QPalette::Button));
}

QRect IndicatorIcon(const QRect& indicator) {
  constexpr int kAround = 3;
  const int side = indicator.height() - 2 * kAround;
  return {indicator.left() + kAround + 1, indicator.top() + kAround, side, side};
}

void DrawHover(QPainter& painter, const QRectF& rect, const QPalette& palette) {
  DrawGround(painter, rect, Faint(palette, 0.10F));
}

void DrawSelection(QPainter& painter, const QRectF& rect, const QPalette& palette) {
  DrawGround(painter, rect, Faint(palette, 0.20F));
}

Style::Style() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  switch (element) {
    case PE_PanelButtonCommand:
      DrawKey(*painter, *option);
      return;
    case PE_FrameFocusRect:
      DrawFocusRing(*painter, option->rect, option->palette);
      return;
    case PE_Frame:
      // Around long texts and lists, which have no other mark of the focus while nothing in them is selected.
      painter->save();
      painter->setRenderHint(QPainter::Antialiasing);
      painter->setPen(BorderColor(option->palette));
      painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
      painter->restore();
      if (option->state.testFlag(State_HasFocus)) DrawFocusRing(*painter, option->rect, option->palette);
      return;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
  if (element == CE_TabBarTabShape) {
    DrawTab(*painter, *option);
    return;
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

QRect Style::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
  if (element == SE_PushButtonFocusRect) return option->rect;
  return QProxyStyle::subElementRect(element, option, widget);
}

}  // namespace corvex
