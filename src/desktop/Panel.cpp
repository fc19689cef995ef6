#include "desktop/Panel.h"

#include <QPainter>

#include "desktop/Theme.h"

namespace corvex {

Panel::Panel(Look look, QWidget* parent) : QWidget(parent), look_(look) {
  if (look != Look::Plain) setPalette(PaletteFor(look, palette()));
  setAutoFillBackground(true);
}

void Panel::SetTitle(const QString& title) {
  if (title == title_) return;
  title_ = title;
  setAccessibleName(title);
  update();
}

void Panel::paintEvent(QPaintEvent*) {
  if (look_ == Look::Plain && title_.isEmpty()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool popUp = look_ == Look::PopUp;
  const qreal line = popUp ? 2 : 1;
  const qreal half = line / 2;
  QRectF frame = QRectF(rect()).adjusted(half, half, -half, -half);
  painter.setPen(QPen(popUp ? palette().color(QPalette::Link) : BorderColor(palette()), line));
  if (title_.isEmpty()) {
    painter.drawRoundedRect(frame, 3, 3);
    return;
  }
  // The title is a strip across the top, so that a panel reads as a window within the window.
  QFont bold = font();
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  const QRect strip(0, 0, width(), metrics.height() + 4);
  painter.fillRect(strip, palette().color(QPalette::AlternateBase));
  painter.drawRoundedRect(frame, 3, 3);
  painter.setFont(bold);
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
  painter.drawText(strip.adjusted(6, 0, -6, 0), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                   metrics.elidedText(title_, Qt::ElideRight, width() - 12));
}

}  // namespace corvex
