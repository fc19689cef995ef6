#include "desktop/QtDialogs.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QFontDialog>
#include <QFontInfo>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <algorithm>
#include <utility>

#include "desktop/QtWindowSystem.h"
#include "desktop/look/QtText.h"
#include "desktop/look/Theme.h"
#include "desktop/views/FormWindow.h"

namespace corvex {

namespace {

void Fill(QMessageBox& box, const QString& text, const std::string& title) {
  box.setTextFormat(Qt::PlainText);  // text from the modem is never markup
  box.setText(text);
  box.setWindowTitle(ToShown(title).trimmed() + u' ');  // not empty, or Qt would show the program's file name
}

/// Returns the width in pixels that a title bar needs for a title and the window buttons. At most 900 pixels,
/// so that the dialog fits on the screen.
int TitleWidth(const QString& title) {
  constexpr int kButtons = 140;
  constexpr int kMost = 900;
  QFont font = QFontDatabase::systemFont(QFontDatabase::TitleFont);
  font.setBold(true);  // some window managers use bold titles
  return std::min(QFontMetrics(font).horizontalAdvance(title) + kButtons, kMost);
}

/// Converts the filters of a question to Qt's form: each text followed by its patterns in parentheses.
QStringList NameFilters(std::string_view filter) {
  const QStringList parts = ToQt(filter).split(u'|');
  QStringList filters;
  for (qsizetype i = 0; i < parts.size(); i += 2) {
    const QString text = parts[i].trimmed();
    QStringList patterns = (i + 1 < parts.size() ? parts[i + 1] : parts[i]).split(u';', Qt::SkipEmptyParts);
    for (QString& pattern : patterns) {
      pattern = pattern.trimmed();
      if (pattern == u"*.*") pattern = QStringLiteral("*");  // includes files without a dot
    }
    const QString shown = patterns.join(u' ');
    if (shown.isEmpty()) continue;
    const bool named = i + 1 < parts.size() && !text.isEmpty();
    const QString bracketed = QStringLiteral(" (%1)").arg(shown);
    filters += !named ? shown : text.endsWith(bracketed) ? text : text + bracketed;
  }
  return filters;
}

void StartAt(QFileDialog& dialog, const std::string& start) {
  const QFileInfo place(QFile::decodeName(start.c_str()));
  if (start.empty()) return;
  if (place.isDir()) {
    dialog.setDirectory(place.absoluteFilePath());
  } else if (place.dir().exists()) {
    dialog.setDirectory(place.absolutePath());
    dialog.selectFile(place.fileName());
  }
}

}  // namespace

void QtDialogs::StopAsking(std::vector<std::string> folders) {
  if (std::exchange(asks_, false)) {
    folders_ = std::move(folders);
    std::reverse(folders_.begin(), folders_.end());
  }
  for (QWidget* window : QApplication::topLevelWidgets()) {
    auto* box = qobject_cast<QDialog*>(window);
    if (box != nullptr && box->isVisible()) box->reject();
  }
}

std::optional<std::string> QtDialogs::NameUnasked() {
  if (folders_.empty()) return std::nullopt;
  const QDir folder(QFile::decodeName(folders_.back().c_str()));
  folders_.pop_back();
  const QString name = QDateTime::currentDateTime().toString(QStringLiteral("'printout-'yyyyMMdd-HHmmss"));
  QString path;
  for (int copy = 1; path.isEmpty() || QFile::exists(path); ++copy) {
    const QString number = copy == 1 ? QString() : QStringLiteral("-%1").arg(copy);
    path = QDir::toNativeSeparators(folder.absoluteFilePath(name + number + QStringLiteral(".txt")));
  }
  return QFile::encodeName(path).toStdString();
}

int QtDialogs::Run(QDialog& dialog) {
  if (!asks_) return QDialog::Rejected;
  bool answered = false;
  QObject::connect(&dialog, &QDialog::finished, &dialog, [&answered] { answered = true; });
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.show();
  while (!answered) loop_.Pump();
  return dialog.result();
}

void QtDialogs::MessageBox(std::string_view text) {
  QMessageBox box(QMessageBox::Information, {}, {}, QMessageBox::Ok, windows_.FrontWindow());
  Fill(box, ToShown(text), windows_.applicationTitle());
  Run(box);
}

QWidget* QtDialogs::OwnerOf(const Form* form) const {
  QWidget* const window = form == nullptr ? nullptr : windows_.WindowOf(*form);
  return window == nullptr ? windows_.FrontWindow() : window;
}

Answer QtDialogs::Ask(const Question& question) {
  // The only question with three buttons is whether to save.
  if (!asks_ && question.buttons == Buttons::YesNoCancel) return folders_.empty() ? Answer::No : Answer::Yes;
  return Ask(question, ToShown(question.text), OwnerOf(question.owner));
}

Answer QtDialogs::Ask(const Question& question, const QString& text, QWidget* owner) {
  const bool notice = question.buttons == Buttons::Ok;
  const bool okCancel = question.buttons == Buttons::OkCancel;
  const bool mayCancel = okCancel || question.buttons == Buttons::YesNoCancel;
  QMessageBox::StandardButtons buttons = notice     ? QMessageBox::StandardButtons(QMessageBox::Ok)
                                         : okCancel ? QMessageBox::Ok | QMessageBox::Cancel
                                                    : QMessageBox::Yes | QMessageBox::No;
  if (mayCancel) buttons |= QMessageBox::Cancel;
  QMessageBox box(question.warns ? QMessageBox::Warning : QMessageBox::Question, {}, {}, buttons, owner);
  Fill(box, text, question.title.empty() ? windows_.applicationTitle() : question.title);
  // Enter chooses the answer that changes least, in case the user presses it by accident. Exception: to the
  // question whether to save, Enter chooses Yes.
  const auto safest = notice ? QMessageBox::Ok : mayCancel ? QMessageBox::Cancel : QMessageBox::No;
  box.setDefaultButton(question.buttons == Buttons::YesNoCancel ? QMessageBox::Yes : safest);
  box.setEscapeButton(safest);
  switch (Run(box)) {
    case QMessageBox::Yes:
      return Answer::Yes;
    case QMessageBox::Ok:
      return Answer::Ok;
    case QMessageBox::No:
      return Answer::No;
    default:
      return mayCancel ? Answer::Cancel : Answer::No;
  }
}

std::optional<std::string> QtDialogs::InputBox(std::string_view prompt, std::string_view title) {
  QInputDialog box(windows_.FrontWindow());
  box.setInputMode(QInputDialog::TextInput);
  box.setLabelText(ToShown(prompt));
  for (QLabel* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
  box.setWindowTitle(ToShown(title).trimmed() + u' ');
  if (prompt.starts_with("Enter password")) box.setTextEchoMode(QLineEdit::Password);
  // The box takes its width from its contents and would cut off a longer title.
  for (QLineEdit* line : box.findChildren<QLineEdit*>()) line->setMinimumWidth(TitleWidth(box.windowTitle()));
  if (Run(box) != QDialog::Accepted) return std::nullopt;
  return FromQt(box.textValue());
}

std::optional<std::string> QtDialogs::OpenFile(const FileQuestion& question) {
  return AskFile(question, false);
}

std::optional<std::string> QtDialogs::SaveFile(const FileQuestion& question) {
  return asks_ ? AskFile(question, true) : NameUnasked();
}

std::optional<std::string> QtDialogs::AskFile(const FileQuestion& question, bool saves) {
  QWidget* const owner = OwnerOf(question.owner);
  QFileDialog dialog(owner, ToShown(question.title).trimmed() + u' ');
  dialog.setFileMode(saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);  // asked below, in a box that pumps events
  dialog.setNameFilters(NameFilters(question.filter));
  StartAt(dialog, question.start);
  // A window that is destroyed cancels its dialogs and removes their parent. The loop then ends.
  while (dialog.parentWidget() == owner && Run(dialog) == QDialog::Accepted) {
    const QString path = QDir::toNativeSeparators(dialog.selectedFiles().value(0));
    const bool exists = QFile::exists(path);
    const QString doubt = !saves                   ? QString()
                          : exists                 ? QStringLiteral("This file already exists. Replace it?")
                          : question.asksBeforeNew ? QStringLiteral("This file does not exist. Create it?")
                                                   : QString();
    if (doubt.isEmpty() || Ask({}, path + u'\n' + doubt, owner) == Answer::Yes)
      return QFile::encodeName(path).toStdString();
  }
  return std::nullopt;
}

std::optional<Font> QtDialogs::ChooseFont(const Font& font, bool forPrinter, const Form* owner) {
  QFont first = MakeFont(font, false);
  first.setPointSizeF(std::max(font.size, 1.0));
  first.setFamily(QFontInfo(first).family());  // the dialog lists no styles for a substituted family
  QFontDialog dialog(first, OwnerOf(owner));
  if (forPrinter) dialog.setOption(QFontDialog::ScalableFonts);
  if (Run(dialog) != QDialog::Accepted) return std::nullopt;
  const QFont chosen = dialog.selectedFont();
  return Font{.name = FromQt(chosen.family()),
              .size = chosen.pointSizeF(),
              .bold = chosen.bold(),
              .italic = chosen.italic(),
              .underline = chosen.underline()};
}

}  // namespace corvex
