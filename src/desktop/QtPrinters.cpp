#include "desktop/QtPrinters.h"

#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTextLayout>

#include "desktop/FormWindow.h"
#include "desktop/QtText.h"
#include "desktop/QtWindowSystem.h"

namespace corvex {

bool PrintPages(QPrinter& printer, const std::string& text, const Printers::PrintFont& font) {
  QFont face(ToQt(font.name));
  face.setPointSizeF(font.size > 0 ? font.size : 12);
  face.setBold(font.bold);
  face.setItalic(font.italic);

  QPainter painter;
  if (!painter.begin(&printer)) return false;
  painter.setFont(face);
  const QFontMetricsF metrics(face, &printer);
  const QSizeF page = painter.viewport().size();
  QTextOption wrapping;
  wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  wrapping.setTabStopDistance(8 * metrics.horizontalAdvance(u'0'));

  qreal y = 0;
  bool first = true;
  QString whole = ToQt(text);
  whole.remove(u'\r');
  for (const QString& sheet : whole.split(u'\f')) {
    if (!first) {
      printer.newPage();
      y = 0;
    }
    first = false;
    for (const QString& paragraph : sheet.split(u'\n')) {
      QTextLayout layout(paragraph, face, &printer);
      layout.setTextOption(wrapping);
      layout.beginLayout();
      for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(page.width());
        if (y > 0 && y + metrics.lineSpacing() > page.height()) {
          printer.newPage();
          y = 0;
        }
        // Each line at the place where it falls, not where the layout has it: pages break between them.
        line.draw(&painter, QPointF(0, y));
        y += metrics.lineSpacing();
      }
      layout.endLayout();
    }
  }
  return painter.end();
}

bool PrintPicture(QPrinter& printer, const QPixmap& picture) {
  QPainter painter;
  if (!painter.begin(&printer)) return false;
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const QRect place({}, picture.size().scaled(painter.viewport().size(), Qt::KeepAspectRatio));
  painter.drawPixmap(place, picture);
  return painter.end();
}

namespace {

/// A default printer is valid even where there is none: it writes a file.
bool HasPrinter() {
  return !QPrinterInfo::availablePrinters().isEmpty();
}

}  // namespace

bool QtPrinters::PrintText(const std::string& text, const PrintFont& font) {
  if (!HasPrinter()) return false;
  QPrinter printer(QPrinter::HighResolution);
  return PrintPages(printer, text, font);
}

bool QtPrinters::PrintWindow(const Form& form) {
  FormWindow* const window = windows_.WindowOf(form);
  if (window == nullptr || !HasPrinter()) return false;
  QPrinter printer(QPrinter::HighResolution);
  return PrintPicture(printer, window->grab());
}

}  // namespace corvex
