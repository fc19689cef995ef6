#include "desktop/QtDialogs.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>

#include "desktop/FormWindow.h"
#include "desktop/QtText.h"
#include "desktop/QtWindowSystem.h"

namespace corvex {

namespace {

void Fill(QMessageBox& box, const QString& text, const std::string& title) {
  box.setTextFormat(Qt::PlainText);  // what the modem sends is never mark-up
  box.setText(text);
  box.setWindowTitle(ToShown(title).trimmed() +
                     u' ');  // never none: the program's file name would stand there
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

int QtDialogs::Run(QDialog& dialog) {
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

bool QtDialogs::AskYesNo(std::string_view text) {
  return AskYesNo(ToShown(text), windows_.FrontWindow());
}

bool QtDialogs::AskYesNo(const QString& text, QWidget* owner) {
  QMessageBox box(QMessageBox::Question, {}, {}, QMessageBox::Yes | QMessageBox::No, owner);
  Fill(box, text, windows_.applicationTitle());
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return Run(box) == QMessageBox::Yes;
}

std::optional<std::string> QtDialogs::InputBox(std::string_view prompt, std::string_view title) {
  QInputDialog box(windows_.FrontWindow());
  box.setInputMode(QInputDialog::TextInput);
  box.setLabelText(ToShown(prompt));
  for (QLabel* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
  box.setWindowTitle(ToShown(title).trimmed() + u' ');
  if (prompt.starts_with("Enter password")) box.setTextEchoMode(QLineEdit::Password);
  if (Run(box) != QDialog::Accepted) return std::nullopt;
  return FromQt(box.textValue());
}

std::optional<std::string> QtDialogs::OpenFile(const FileQuestion& question) {
  return AskFile(question, false);
}

std::optional<std::string> QtDialogs::SaveFile(const FileQuestion& question) {
  return AskFile(question, true);
}

std::optional<std::string> QtDialogs::AskFile(const FileQuestion& question, bool saves) {
  QWidget* owner = question.owner == nullptr ? nullptr : windows_.WindowOf(*question.owner);
  if (owner == nullptr) owner = windows_.FrontWindow();
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
    if (doubt.isEmpty() || AskYesNo(path + u'\n' + doubt, owner))
      return QFile::encodeName(path).toStdString();
  }
  return std::nullopt;
}

}  // namespace corvex
