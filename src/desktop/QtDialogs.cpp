#include "desktop/QtDialogs.h"

#include <QInputDialog>
#include <QMessageBox>

#include "desktop/QtText.h"
#include "desktop/QtWindowSystem.h"

namespace corvex {

namespace {

void Fill(QMessageBox& box, std::string_view text, const std::string& title) {
  box.setTextFormat(Qt::PlainText);  // what the modem sends is never mark-up
  box.setText(ToShown(text));
  box.setWindowTitle(ToShown(title).trimmed() +
                     u' ');  // never none: the program's file name would stand there
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
  Fill(box, text, windows_.applicationTitle());
  Run(box);
}

bool QtDialogs::AskYesNo(std::string_view text) {
  QMessageBox box(QMessageBox::Question, {}, {}, QMessageBox::Yes | QMessageBox::No, windows_.FrontWindow());
  Fill(box, text, windows_.applicationTitle());
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return Run(box) == QMessageBox::Yes;
}

std::optional<std::string> QtDialogs::InputBox(std::string_view prompt, std::string_view title) {
  QInputDialog box(windows_.FrontWindow());
  box.setInputMode(QInputDialog::TextInput);
  box.setLabelText(ToShown(prompt));
  box.setWindowTitle(ToShown(title).trimmed() + u' ');
  if (prompt.starts_with("Enter password")) box.setTextEchoMode(QLineEdit::Password);
  if (Run(box) != QDialog::Accepted) return std::nullopt;
  return FromQt(box.textValue());
}

}  // namespace corvex
