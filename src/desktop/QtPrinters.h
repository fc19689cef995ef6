#pragma once

#include "platform/Services.h"

class QPixmap;
class QPrintDialog;
class QPrinter;

namespace corvex {

/// Prints a text on as many pages as needed. A form feed starts a new page. Returns false if the printer
/// cannot be written to or if the text needs more than 2000 pages.
bool PrintPages(QPrinter& printer, const std::string& text, const Font& font);

/// Prints a picture at the top of a page, as large as the page allows. Returns false if the printer cannot be
/// written to.
bool PrintPicture(QPrinter& printer, const QPixmap& picture);

class QtDialogs;
class QtWindowSystem;

class QtPrinters : public Printers {
 public:
  QtPrinters(const QtWindowSystem& windows, QtDialogs& dialogs) : windows_(windows), dialogs_(dialogs) {}
  int Count() const override;
  std::string DefaultName() const override;
  bool PrintText(const std::string& text, const Font& font) override;
  bool PrintWindow(const Form& form) override;
  std::unique_ptr<PrintJob> Choose(const Form* owner) override;
  void ChooseDefault(const Form* owner) override;

 private:
  bool Accepted(QPrintDialog& dialog);

  const QtWindowSystem& windows_;
  QtDialogs& dialogs_;
};

}  // namespace corvex
