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
  box.setTextFormat(Qt::PlainText);  // what the modem sends is never mark-up
  box.setText(text);
  box.setWindowTitle(ToShown(title).trimmed() +
                     u' ');  // never none: the program's file name would stand there
}

/// What a title takes in the bar above a box, with the system's buttons beside it; not more than a screen
/// has.
int TitleWidth(const QString& title) {
  constexpr int kButtons = 140;
  constexpr int kMost = 900;
  QFont font = QFontDatabase::systemFont(QFontDatabase::TitleFont);
  font.setBold(true);  // as some window managers have it
  return std::min(QFontMetrics(font).horizontalAdvance(title) + kButtons, kMost);
}

/// Filters of a question as Qt has them: the text with the patterns in brackets behind it.
QStringList NameFilters(std::string_view filter) {
  const QStringList parts = ToQt(filter).split(u'|');
  QStringList filters;
  for (qsizetype i = 0; i < parts.size(); i += 2) {
    const QString text = parts[i].trimmed();
    QStringList patterns = (i + 1 < parts.size() ? parts[i + 1] : parts[i]).split(u';', Qt::SkipEmptyParts);
    for (QString& pattern : patterns) {
      pattern = pattern.trimmed();
      if (pattern == u"*.*") pattern = QStringLiteral("*");  // files without a dot too
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
  // The one question with three buttons is whether to save.
  if (!asks_ && question.buttons == Buttons::YesNoCancel) return folders_.empty() ? Answer::No : Answer::Yes;
  return Ask(question, ToShown(question.text), OwnerOf(question.owner));
}

Answer QtDialogs::Ask(const Question& question, const QString& text, QWidget* owner) {
  const bool okCancel = question.buttons == Buttons::OkCancel;
  const bool mayCancel = question.buttons != Buttons::YesNo;
  QMessageBox::StandardButtons buttons =
      okCancel ? QMessageBox::Ok | QMessageBox::Cancel : QMessageBox::Yes | QMessageBox::No;
  if (mayCancel) buttons |= QMessageBox::Cancel;
  QMessageBox box(question.warns ? QMessageBox::Warning : QMessageBox::Question, {}, {}, buttons, owner);
  Fill(box, text, question.title.empty() ? windows_.applicationTitle() : question.title);
  // What an Enter in passing gives is what changes least.
  const auto safest = mayCancel ? QMessageBox::Cancel : QMessageBox::No;
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
  // The box takes its width from what is in it, and would cut off a longer title.
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
  dialog.setOption(QFileDialog::DontConfirmOverwrite);  // asked below, by pumping as every question is
  dialog.setNameFilters(NameFilters(question.filter));
  StartAt(dialog, question.start);
  // Called off with the window, it has no owner any more.
  while (dialog.parentWidget() == owner && Run(dialog) == QDialog::Accepted) {
    const QString path = QDir::toNativeSeparators(dialog.selectedFiles().value(0));
    const bool exists = QFile::exists(path);
    const QString doubt = !saves                   ? QString()
                          : exists                 ? QStringLiteral("This file exists already. Replace it?")
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
  first.setFamily(QFontInfo(first).family());  // the box knows no styles of a family that stands for another
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
