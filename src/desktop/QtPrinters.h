#pragma once

#include "platform/Services.h"

class QPrinter;

namespace corvex {

/// Lays a text out on as many pages as it takes; a form feed begins a new one. False if the printer cannot be
/// written to.
bool PrintPages(QPrinter& printer, const std::string& text, const Printers::PrintFont& font);

class QtPrinters : public Printers {
 public:
  bool PrintText(const std::string& text, const PrintFont& font) override;
};

}  // namespace corvex
