#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvex {

enum class TerminalModel : std::int32_t {
  Heron = 0,
  Lark = 1,
  LarkB = 2,  ///< Has a title, but no reply selects it. Intentional.
  Wren = 3,
  Albatross = 4,
  Petrel = 5,
  Kestrel = 6,
  Unknown = 7,
};

/// Returns the model whose part number occurs in the modem's reply to "at+gmm", or Unknown.
TerminalModel TerminalModelFromText(std::string_view reply);

/// Returns the main window's title for a terminal model. For some models it begins with the brand.
std::string TerminalModelTitle(TerminalModel model, std::string_view brand);

}  // namespace corvex
