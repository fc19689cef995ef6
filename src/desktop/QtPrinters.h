#pragma once

#include "platform/Services.h"

class QPixmap;
class QPrinter;

namespace corvex {

/// Lays a text out on as many pages as it takes; a form feed begins a new one. False if the printer cannot be
/// written to.
bool PrintPages(QPrinter& printer, const std::string& text, const Printers::PrintFont& font);

/// Prints a picture as large as the page allows, at the top of it. False as above.
bool PrintPicture(QPrinter& printer, const QPixmap& picture);

class QtWindowSystem;

class QtPrinters : public Printers {
 public:
  explicit QtPrinters(const QtWindowSystem& windows) : windows_(windows) {}
  bool PrintText(const std::string& text, const PrintFont& font) override;
  bool PrintWindow(const Form& form) override;

 private:
  const QtWindowSystem& windows_;
};

}  // namespace corvex
