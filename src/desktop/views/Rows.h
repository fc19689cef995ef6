#pragma once

#include <QPainter>
#include <QStyledItemDelegate>

#include "desktop/look/Style.h"

// How the entries of lists, combo boxes and trees are drawn.

namespace corvex {

inline constexpr int kRowMargin = 3;

/// Draws the background of an entry. The selected entry has an additional ring while its list has the
/// keyboard focus.
inline void DrawEntryGround(QPainter& painter, const QStyleOptionViewItem& option) {
  const QRectF rect = QRectF(option.rect).adjusted(1, 1, -1, -1);
  if (option.state.testFlag(QStyle::State_Selected)) {
    DrawSelection(painter, rect, option.palette);
    const bool focused = option.widget != nullptr && option.widget->hasFocus();
    if (focused) DrawFocusRing(painter, rect, option.palette);
  } else if (option.state.testFlag(QStyle::State_MouseOver)) {
    DrawHover(painter, rect, option.palette);
  }
}

/// Draws a text on one line. Shortens the text if it does not fit.
inline void DrawEntryText(QPainter& painter, const QRect& place, const QFont& font, const QColor& color,
                          const QString& text) {
  painter.setFont(font);
  painter.setPen(color);
  painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                   QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width()));
}

/// Draws a line of text with some extra height, so that it is easy to click on a moving ship.
class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 2 * kRowMargin);
  }
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    DrawEntryGround(*painter, option);
    DrawEntryText(*painter, option.rect.adjusted(3 * kRowMargin, 0, -kRowMargin, 0), option.font,
                  option.palette.color(QPalette::Text), index.data(Qt::DisplayRole).toString());
  }
};

}  // namespace corvex
