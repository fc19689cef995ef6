#pragma once

#include "platform/Services.h"

namespace corvex {

class QtShell : public Shell {
 public:
  bool ShowText(const std::string& path) override;
  std::string ClipboardText() const override;
  void SetClipboardText(const std::string& text) override;
};

}  // namespace corvex
