#include "desktop/look/Style.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>

#include "desktop/look/Icons.h"
#include "desktop/look/Theme.h"

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

/// Draws a button as the cap of a key. A dark lower edge raises the cap until it is pressed.
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
  if (option.state.testFlag(QStyle::State_HasFocus)) DrawFocusRing(painter, option.rect, palette);
}

/// Draws the box of a check box or, if `round`, the ring of a radio button.
void DrawMark(QPainter& painter, const QStyleOption& option, bool round) {
  const QPalette& palette = option.palette;
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool on = option.state.testFlag(QStyle::State_On);
  const QColor fill = !enabled ? palette.color(QPalette::Window)
                      : on     ? palette.color(QPalette::Link)
                               : palette.color(QPalette::Base);
  const bool hovered = enabled && option.state.testFlag(QStyle::State_MouseOver);
  const qreal side = std::min(option.rect.width(), option.rect.height()) - 1;
  QRectF box(0, 0, side, side);
  box.moveCenter(QRectF(option.rect).center());
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(hovered || (on && enabled) ? palette.color(QPalette::Link) : BorderColor(palette));
  painter.setBrush(option.state.testFlag(QStyle::State_Sunken) ? fill.darker(115) : fill);
  painter.drawRoundedRect(box, round ? side / 2 : 3, round ? side / 2 : 3);
  const QColor mark = palette.color(enabled ? QPalette::HighlightedText : QPalette::Text);
  if (on && round) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(mark);
    painter.drawEllipse(box.center(), side / 5, side / 5);
  } else if (on) {
    painter.setPen(QPen(mark, side / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF points[] = {{0.24, 0.52}, {0.43, 0.70}, {0.77, 0.32}};
    QPolygonF check;
    for (const QPointF& point : points) check << box.topLeft() + point * side;
    painter.drawPolyline(check);
  }
  painter.restore();
}

/// Draws the frame around a text field or a long text.
void DrawFieldFrame(QPainter& painter, const QStyleOption& option) {
  if (option.state.testFlag(QStyle::State_HasFocus)) {
    DrawFocusRing(painter, option.rect, option.palette);
    return;
  }
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(BorderColor(option.palette));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
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
  if (option.state.testFlag(QStyle::State_HasFocus)) {
    DrawFocusRing(painter, rect.adjusted(0, 0, 0, -kLine - 1), option.palette);
  }
}

/// Draws the background of a button of a tool bar.
void DrawTool(QPainter& painter, const QStyleOption& option) {
  const QRectF rect = QRectF(option.rect).adjusted(1, 1, -1, -1);
  if (option.state & (QStyle::State_Sunken | QStyle::State_On)) {
    DrawSelection(painter, rect, option.palette);
  } else if (option.state.testFlag(QStyle::State_Enabled) && option.state.testFlag(QStyle::State_MouseOver)) {
    DrawHover(painter, rect, option.palette);
  }
}

/// Draws a closed combo box as a key with an arrow.
void DrawComboBox(const QStyle& style, QPainter& painter, const QStyleOptionComboBox& box,
                  const QWidget* widget) {
  DrawKey(painter, box);
  QStyleOption arrow(box);
  const QRect place = style.subControlRect(QStyle::CC_ComboBox, &box, QStyle::SC_ComboBoxArrow, widget);
  arrow.rect = QRect(0, 0, 13, 13);
  arrow.rect.moveCenter(place.center());
  style.drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, &painter, widget);
}

/// Draws a scroll bar with a clearly visible thumb. Fusion's thumb is as pale as its surroundings.
void DrawScrollBar(const QStyle& style, QPainter& painter, const QStyleOptionSlider& bar,
                   const QWidget* widget) {
  const QPalette& palette = bar.palette;
  painter.fillRect(bar.rect, palette.color(QPalette::Window));
  const bool upright = bar.orientation == Qt::Vertical;
  const bool movable = bar.state.testFlag(QStyle::State_Enabled) && bar.maximum > bar.minimum;
  const auto place = [&](QStyle::SubControl part) {
    return style.subControlRect(QStyle::CC_ScrollBar, &bar, part, widget);
  };
  const auto arrow = [&](QStyle::SubControl part, QStyle::PrimitiveElement shape) {
    QStyleOption option(bar);
    option.rect = place(part).adjusted(3, 3, -3, -3);
    option.state.setFlag(QStyle::State_Enabled, movable);
    style.drawPrimitive(shape, &option, &painter, widget);
  };
  arrow(QStyle::SC_ScrollBarSubLine, upright ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowLeft);
  arrow(QStyle::SC_ScrollBarAddLine,
        upright ? QStyle::PE_IndicatorArrowDown : QStyle::PE_IndicatorArrowRight);
  if (!movable) return;
  const bool held = bar.activeSubControls.testFlag(QStyle::SC_ScrollBarSlider) &&
                    (bar.state & (QStyle::State_MouseOver | QStyle::State_Sunken));
  DrawGround(painter, QRectF(place(QStyle::SC_ScrollBarSlider)).adjusted(3, 3, -3, -3),
             held ? palette.color(QPalette::Link) : BorderColor(palette));
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

QRect IndicatorIcon(const QRect& indicator, bool alone) {
  constexpr int kAround = 3;
  const int across = alone ? indicator.width() - 2 * kAround : indicator.width() * 3 / 10;
  const int side = std::min(indicator.height() - 2 * kAround, across);
  return {indicator.left() + kAround + 1, indicator.top() + (indicator.height() - side) / 2, side, side};
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
    case PE_PanelButtonTool:
      if (!option->state.testFlag(State_AutoRaise)) break;
      DrawTool(*painter, *option);
      return;
    case PE_PanelItemViewRow: {
      // The entry itself marks the selection. Fusion would fill the place before a tree's node too.
      const auto* row = qstyleoption_cast<const QStyleOptionViewItem*>(option);
      QStyleOptionViewItem plain = row == nullptr ? QStyleOptionViewItem() : *row;
      plain.state &= ~State_Selected;
      QProxyStyle::drawPrimitive(element, &plain, painter, widget);
      return;
    }
    case PE_IndicatorToolBarSeparator: {
      const QRect& place = option->rect;
      painter->fillRect(QRect(place.center().x(), place.top() + 4, 1, place.height() - 8),
                        BorderColor(option->palette));
      return;
    }
    case PE_FrameFocusRect:
      DrawFocusRing(*painter, option->rect, option->palette);
      return;
    case PE_IndicatorRadioButton:
      DrawMark(*painter, *option, true);
      return;
    case PE_IndicatorCheckBox:
      DrawMark(*painter, *option, false);
      return;
    case PE_FrameMenu:
      painter->setPen(BorderColor(option->palette));
      painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
      return;
    case PE_Frame:
    case PE_FrameLineEdit:
      DrawFieldFrame(*painter, *option);
      return;
    default:
      break;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
  if (element == CE_TabBarTabShape) {
    DrawTab(*painter, *option);
    return;
  }
  if (element == CE_TabBarTabLabel) {
    const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
    QStyleOptionTab plain = tab == nullptr ? QStyleOptionTab() : *tab;
    plain.state &= ~State_HasFocus;  // DrawTab draws the ring
    QProxyStyle::drawControl(element, &plain, painter, widget);
    return;
  }
  if (element == CE_MenuBarItem && option->state.testFlag(State_Selected) &&
      !option->state.testFlag(State_Sunken)) {
    // Selected by keyboard or pointer, with its menu closed. Fusion hardly marks such an item.
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    QStyleOptionMenuItem plain = item == nullptr ? QStyleOptionMenuItem() : *item;
    plain.state &= ~State_Selected;
    QProxyStyle::drawControl(element, &plain, painter, widget);
    DrawHover(*painter, option->rect, option->palette);
    if (widget != nullptr && widget->hasFocus()) DrawFocusRing(*painter, option->rect, option->palette);
    return;
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ScrollBar && bar != nullptr) {
    DrawScrollBar(*this, *painter, *bar, widget);
    return;
  }
  const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (control == CC_ComboBox && box != nullptr && !box->editable) {
    DrawComboBox(*this, *painter, *box, widget);
    return;
  }
  const auto* tool = qstyleoption_cast<const QStyleOptionToolButton*>(option);
  if (control == CC_ToolButton && tool != nullptr && tool->state.testFlag(State_HasFocus)) {
    QStyleOptionToolButton plain = *tool;
    plain.state &= ~State_HasFocus;  // Fusion's focus frame is inside the text
    QProxyStyle::drawComplexControl(control, &plain, painter, widget);
    DrawFocusRing(*painter, option->rect, option->palette);
    return;
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returned) const {
  switch (hint) {
    case SH_EtchDisabledText:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_ComboBox_Popup:  // the list opens below the box and scrolls
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returned);
  }
}

QIcon Style::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const {
  switch (icon) {
    case SP_MessageBoxInformation:
      return PictureIcon("info");
    case SP_MessageBoxQuestion:
      return PictureIcon("question");
    default:
      return QProxyStyle::standardIcon(icon, option, widget);
  }
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  const int size = QProxyStyle::pixelMetric(metric, option, widget);
  switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      if (widget == nullptr) return size;
      // Grows with the font, but not beyond the height of the row, which is small in a low window.
      return std::min(std::max(size, widget->fontInfo().pixelSize() * 5 / 4), std::max(widget->height(), 8));
    default:
      return size;
  }
}

QRect Style::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
  const QRect rect = QProxyStyle::subElementRect(element, option, widget);
  switch (element) {
    case SE_PushButtonFocusRect:
      return {};  // DrawKey draws the ring
    case SE_CheckBoxFocusRect:
    case SE_RadioButtonFocusRect:
      return rect.adjusted(-3, -1, 3, 1) & option->rect;
    default:
      return rect;
  }
}

}  // namespace corvex
