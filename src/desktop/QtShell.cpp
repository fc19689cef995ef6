#include "desktop/QtShell.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QUrl>

#include "desktop/look/QtText.h"

namespace corvex {

bool QtShell::ShowText(const std::string& path) {
  const QString file = QFile::decodeName(path.c_str());
#ifdef Q_OS_WIN
  return QProcess::startDetached(QStringLiteral("notepad.exe"), {file});
#else
  // Check first: a desktop's viewer does not report a missing file.
  return QFile::exists(file) && QDesktopServices::openUrl(QUrl::fromLocalFile(file));
#endif
}

std::string QtShell::ClipboardText() const {
  QString text = QGuiApplication::clipboard()->text();
  // Other programs may end lines with CR LF, LF or CR.
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
  return FromQt(text.replace(u'\n', QStringLiteral("\r\n")));
}

void QtShell::SetClipboardText(const std::string& text) {
  QString shown = ToQt(text);
  QGuiApplication::clipboard()->setText(shown.remove(u'\r'));
}

}  // namespace corvex
