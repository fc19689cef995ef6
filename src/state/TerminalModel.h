#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvex {

enum class TerminalModel : std::int32_t {
  Heron = 0,
  Lark = 1,
  LarkB = 2,  ///< Has a title but no reply selects it; kept on purpose.
  Wren = 3,
  Albatross = 4,
  Petrel = 5,
  Kestrel = 6,
  Unknown = 7,
};

/// The model that a modem's reply to "at+gmm" names by its part number, Unknown if none.
TerminalModel TerminalModelFromText(std::string_view reply);

/// The title of the program's window with such a terminal, beginning with the brand for some of them.
std::string TerminalModelTitle(TerminalModel model, std::string_view brand);

}  // namespace corvex
