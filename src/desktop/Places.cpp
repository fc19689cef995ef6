#include "desktop/Places.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

#include "desktop/QtText.h"

namespace corvex {

std::string FindAppFolder() {
  const QString own = QCoreApplication::applicationDirPath();
  if (QFileInfo::exists(own + QStringLiteral("/corvex.ini")) || QFileInfo(own).isWritable()) {
    return QFile::encodeName(own).toStdString();
  }
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
