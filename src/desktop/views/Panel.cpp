#include "desktop/views/Panel.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "desktop/look/Theme.h"

namespace corvex {

namespace {

constexpr qreal kRadius = 5;

QRectF Inside(const QRect& rect, qreal line) {
  return QRectF(rect).adjusted(line / 2, line / 2, -line / 2, -line / 2);
}

}  // namespace

Panel::Panel(Look look, QWidget* parent) : QWidget(parent), look_(look) {
  if (look != Look::Plain) setPalette(PaletteFor(look, palette()));
}

void Panel::SetDimmed(bool dimmed) {
  const QPalette application = QApplication::palette();
  setPalette(dimmed ? DimmedPaletteFor(look_, application) : PaletteFor(look_, application));
}

void Panel::SetTitle(const QString& title) {
  if (title == title_) return;
  title_ = title;
  QAccessibleEvent renamed(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&renamed);
  update();
}

QString Panel::ReadableText() const {
  QStringList lines;
  for (const QLabel* label : findChildren<QLabel*>(Qt::FindDirectChildrenOnly)) {
    const QString line = label->text().trimmed();
    if (label->isVisibleTo(this) && label->accessibleName().isEmpty() && !line.isEmpty()) lines << line;
  }
  return lines.join(u'\n');
}

void Panel::Announce() {
  if ((look_ != Look::Screen && look_ != Look::PopUp) || std::exchange(announced_, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        announced_ = false;
        if (!isVisible()) return;
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
        if (look_ != Look::PopUp) return;
        // Not every accessibility bridge forwards alerts. A popup's name is its text, so report a new name
        // too.
        QAccessibleEvent renamed(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&renamed);
      },
      Qt::QueuedConnection);
}

void Panel::showEvent(QShowEvent*) {
  Announce();
}

void Panel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  switch (look_) {
    case Look::Screen:
      return PaintScreen(painter);
    case Look::PopUp:
      return PaintPopUp(painter);
    case Look::Window:
      return PaintWindow(painter);
    default:
      painter.fillRect(rect(), palette().window());
      if (!title_.isEmpty()) PaintGroup(painter);
  }
}

void Panel::PaintScreen(QPainter& painter) const {
  const QColor glass = palette().color(QPalette::Window);
  QLinearGradient light(0, 0, 0, height());
  light.setColorAt(0, glass.lighter(104));
  light.setColorAt(1, glass.darker(104));
  painter.setPen(BorderColor(palette()));
  painter.setBrush(light);
  painter.drawRoundedRect(Inside(rect(), 1), kRadius, kRadius);
  // The shadow of the rim on the glass.
  painter.setBrush(Qt::NoBrush);
  painter.setPen(EdgeColor(palette()));
  painter.drawRoundedRect(Inside(rect().adjusted(1, 1, -1, -1), 1), kRadius - 1, kRadius - 1);
}

void Panel::PaintPopUp(QPainter& painter) const {
  constexpr qreal kLine = 2;
  painter.setPen(QPen(palette().color(QPalette::Link), kLine));
  painter.setBrush(palette().window());
  painter.drawRoundedRect(Inside(rect(), kLine), kRadius, kRadius);
}

void Panel::PaintWindow(QPainter& painter) const {
  constexpr int kAbove = 4;
  const QRectF frame = Inside(rect(), 1);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().window());
  painter.drawRoundedRect(frame, kRadius, kRadius);
  // In a wide and low window, the title bar must not cover the controls below it.
  const int wanted = fontMetrics().height() + 2 * kAbove;
  const int room = childrenRect().top();
  const QRect bar(0, 0, width(), room > 0 ? std::min(wanted, room) : wanted);
  QPainterPath outline;
  outline.addRoundedRect(frame, kRadius, kRadius);
  painter.save();
  painter.setClipRect(bar);
  painter.fillPath(outline, palette().color(QPalette::Link));
  painter.restore();
  painter.setPen(palette().color(QPalette::HighlightedText));
  PaintTitle(painter, bar.adjusted(9, 0, -9, 0));
  painter.setPen(palette().color(QPalette::Link));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(outline);
}

void Panel::PaintGroup(QPainter& painter) const {
  const int title = fontMetrics().height() + 2;
  painter.setPen(BorderColor(palette()));
  painter.drawRoundedRect(Inside(rect(), 1), kRadius, kRadius);
  painter.setPen(palette().color(QPalette::WindowText));
  PaintTitle(painter, QRect(8, 2, width() - 16, title));
}

void Panel::PaintTitle(QPainter& painter, const QRect& place) const {
  QFont bold = font();
  bold.setBold(true);
  bold = ShrunkToFit(bold, 1, [&](const QFont& in) { return QFontMetrics(in).height() <= place.height(); });
  constexpr int kSmallest = 7;
  bold = ShrunkToFit(bold, kSmallest, [&](const QFont& in) {
    return QFontMetrics(in).elidedText(title_, Qt::ElideRight, place.width()) == title_;
  });
  painter.setFont(bold);
  painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                   QFontMetrics(bold).elidedText(title_, Qt::ElideRight, place.width()));
}

}  // namespace corvex
