#pragma once

#include <QString>
#include <QTextDocument>
#include <string>
#include <string_view>

// Conversions between the core's texts and Qt's. The core's texts are Latin-1, one byte per character.

namespace corvex {

inline QString ToQt(std::string_view text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

/// Characters outside Latin-1 become "?".
inline std::string FromQt(const QString& text) {
  return text.toLatin1().toStdString();
}

/// Converts a text of one or more lines for display as plain text. CR is removed, so lines end with LF.
/// Control characters become spaces, except for those in `kept`.
inline QString ToShown(std::string_view text, QStringView kept = u"\n\t") {
  QString shown = ToQt(text);
  shown.remove(u'\r');
  for (QChar& c : shown) {
    if (c.category() == QChar::Other_Control && !kept.contains(c)) c = u' ';
  }
  return shown;
}

/// Converts a text for a tool tip. Qt never interprets the result as markup, because text from the modem is
/// not trusted.
inline QString ToToolTip(std::string_view text) {
  const QString shown = ToShown(text);
  return Qt::mightBeRichText(shown) ? QStringLiteral("<qt>") + shown.toHtmlEscaped() + QStringLiteral("</qt>")
                                    : shown;
}

}  // namespace corvex
