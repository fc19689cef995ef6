#include "desktop/QtPrinters.h"

#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QTextLayout>
#include <algorithm>
#ifdef Q_OS_WIN
#include <windows.h>
#include <winspool.h>
#endif

#include "desktop/QtDialogs.h"
#include "desktop/QtWindowSystem.h"
#include "desktop/look/QtText.h"
#include "desktop/look/Theme.h"
#include "desktop/views/FormWindow.h"

namespace corvex {

namespace {

/// Page limit of one document. Printing a longer document is aborted, because it is considered a mistake.
constexpr int kMostPages = 2000;
/// Maximum number of characters in one layout. A layout of a megabyte without a line end takes too long.
constexpr qsizetype kLongestParagraph = 8192;

}  // namespace

bool PrintPages(QPrinter& printer, const std::string& text, const Font& font) {
  QFont face = MakeFont(font, false);  // uses the system's font in place of a typewriter font
  face.setPointSizeF(std::max(font.size, 1.0));
  face.setUnderline(false);  // printouts are never underlined

  QPainter painter;
  if (!painter.begin(&printer)) return false;
  painter.setFont(face);
  const QFontMetricsF metrics(face, &printer);
  const QSizeF page = painter.viewport().size();
  QTextOption wrapping;
  wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  wrapping.setTabStopDistance(8 * metrics.horizontalAdvance(u'0'));

  qreal y = 0;
  int pages = 1;
  const auto turnPage = [&] {
    y = 0;
    return ++pages <= kMostPages && printer.newPage();
  };
  const auto printParagraph = [&](const QString& paragraph) {
    QTextLayout layout(paragraph, face, &printer);
    layout.setTextOption(wrapping);
    layout.beginLayout();
    bool printed = true;
    while (printed) {
      QTextLine line = layout.createLine();
      if (!line.isValid()) break;
      line.setLineWidth(page.width());
      if (y > 0 && y + metrics.lineSpacing() > page.height()) printed = turnPage();
      // The line is drawn at y, not at its position in the layout, because a paragraph can span two pages.
      line.draw(&painter, QPointF(0, y));
      y += metrics.lineSpacing();
    }
    layout.endLayout();
    return printed;
  };
  bool printed = true;
  const QString whole = ToShown(text, u"\n\t\f");
  // A line end or form feed at the end of the text does not start another page.
  for (qsizetype at = 0; printed && at < whole.size();) {
    qsizetype end = at;
    while (end < whole.size() && end - at < kLongestParagraph && whole[end] != u'\n' && whole[end] != u'\f')
      ++end;
    printed = printParagraph(whole.mid(at, end - at));
    const QChar next = end < whole.size() ? whole[end] : QChar(u'\n');
    if (printed && next == u'\f' && end + 1 < whole.size()) printed = turnPage();
    at = next == u'\n' || next == u'\f' ? end + 1 : end;
  }
  if (!printed) printer.abort();
  return painter.end() && printed;
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

class QtPrintJob : public PrintJob {
 public:
  bool Print(const std::string& text, const Font& font) override { return PrintPages(printer, text, font); }
  QPrinter printer{QPrinter::HighResolution};
};

}  // namespace

/// Counts the printers that the system lists. QPrinter::isValid cannot be used: a default QPrinter is valid
/// even if the system has no printer, and then prints to a file.
int QtPrinters::Count() const {
  return static_cast<int>(QPrinterInfo::availablePrinterNames().size());
}

std::string QtPrinters::DefaultName() const {
  const QString chosen = QPrinterInfo::defaultPrinterName();
  // If the system has no default printer, Qt prints on the first one.
  return FromQt(chosen.isEmpty() ? QPrinterInfo::availablePrinterNames().value(0) : chosen);
}

bool QtPrinters::PrintText(const std::string& text, const Font& font) {
  return QtPrintJob().Print(text, font);
}

bool QtPrinters::PrintWindow(const Form& form) {
  FormWindow* const window = windows_.WindowOf(form);
  if (window == nullptr) return false;
  QPrinter printer(QPrinter::HighResolution);
  return PrintPicture(printer, window->grab());
}

bool QtPrinters::Accepted(QPrintDialog& dialog) {
#ifdef Q_OS_WIN
  return dialog.exec() == QDialog::Accepted;  // the system's dialog, which supports only exec()
#else
  return dialogs_.Run(dialog) == QDialog::Accepted;
#endif
}

namespace {

/// Restricts a dialog to whole documents on paper: no page ranges and no printing to a file.
void OfferWholeOnPaper(QPrintDialog& dialog) {
  dialog.setOptions(QAbstractPrintDialog::PrintCollateCopies | QAbstractPrintDialog::PrintShowPageSize);
  // Qt's own dialog shows the group of the page ranges whatever the options are, even if the group was hidden
  // before. The group is therefore moved into a hidden widget.
  auto* ranges = dialog.findChild<QWidget*>(QStringLiteral("gbPrintRange"));
  if (ranges == nullptr) return;
  auto* hidden = new QWidget(&dialog);
  hidden->hide();
  ranges->setParent(hidden);
}

}  // namespace

std::unique_ptr<PrintJob> QtPrinters::Choose(const Form* owner) {
  auto job = std::make_unique<QtPrintJob>();
  QPrintDialog dialog(&job->printer, dialogs_.OwnerOf(owner));
  OfferWholeOnPaper(dialog);
  return Accepted(dialog) ? std::move(job) : nullptr;
}

void QtPrinters::ChooseDefault(const Form* owner) {
  QPrinter printer;
  QPrintDialog dialog(&printer, dialogs_.OwnerOf(owner));
  OfferWholeOnPaper(dialog);
  if (!Accepted(dialog) || printer.printerName().isEmpty()) return;
#ifdef Q_OS_WIN
  SetDefaultPrinterW(reinterpret_cast<const wchar_t*>(printer.printerName().utf16()));
#else
  // QProcess::execute is not used: it would wait without limit for a print server that does not answer.
  constexpr int kPatience = 3000;  // milliseconds
  QProcess chooses;
  chooses.start(QStringLiteral("lpoptions"), {QStringLiteral("-d"), printer.printerName()});
  chooses.waitForFinished(kPatience);
#endif
}

}  // namespace corvex
