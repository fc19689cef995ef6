#pragma once

#include <QString>
#include <QTextDocument>
#include <string>
#include <string_view>

// Texts of the core are one byte a character, Latin-1.

namespace corvex {

inline QString ToQt(std::string_view text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

/// Characters outside Latin-1 become "?".
inline std::string FromQt(const QString& text) {
  return text.toLatin1().toStdString();
}

/// A text on one or more lines to be shown as it is: line ends become Qt's, control characters blanks but for
/// those that are kept.
inline QString ToShown(std::string_view text, QStringView kept = u"\n\t") {
  QString shown = ToQt(text);
  shown.remove(u'\r');
  for (QChar& c : shown) {
    if (c.category() == QChar::Other_Control && !kept.contains(c)) c = u' ';
  }
  return shown;
}

/// A tool tip that is never taken for mark-up: what the modem sends is not to be trusted with that.
inline QString ToToolTip(std::string_view text) {
  const QString shown = ToShown(text);
  return Qt::mightBeRichText(shown) ? QStringLiteral("<qt>") + shown.toHtmlEscaped() + QStringLiteral("</qt>")
                                    : shown;
}

}  // namespace corvex
