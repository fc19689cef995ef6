#include "desktop/Places.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QStandardPaths>
#include <QTemporaryFile>

#include "desktop/look/QtText.h"

namespace corvex {

std::string FindAppFolder() {
  const QString own = QCoreApplication::applicationDirPath();
  // Try to create a file: on some systems, permissions alone do not show whether a folder is writable.
  if (QTemporaryFile(own + QStringLiteral("/corvex-XXXXXX")).open())
    return QFile::encodeName(own).toStdString();
  const QString users =
      QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/corvex");
  QDir().mkpath(users);
  return QFile::encodeName(users).toStdString();
}

std::string LongDate(int year, int month, int day) {
  const QDate date(year, month, day);
  return date.isValid() ? FromQt(QLocale::system().toString(date, QLocale::LongFormat)) : std::string();
}

}  // namespace corvex
