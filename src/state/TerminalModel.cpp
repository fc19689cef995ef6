#include "state/TerminalModel.h"

#include <array>
#include <utility>

#include "base/Text.h"

namespace corvex {

TerminalModel TerminalModelFromText(std::string_view reply) {
  // The order matters: if a reply contains two part numbers, the first one in this table wins.
  static constexpr std::array<std::pair<std::string_view, TerminalModel>, 6> kPartNumbers{{
      {"7700413", TerminalModel::Albatross},
      {"204417", TerminalModel::Heron},
      {"204938", TerminalModel::Lark},
      {"205226", TerminalModel::Wren},
      {"205570", TerminalModel::Petrel},
      {"205581", TerminalModel::Kestrel},
  }};
  for (const auto& [number, model] : kPartNumbers) {
    if (Contains(reply, number)) return model;
  }
  return TerminalModel::Unknown;
}

std::string TerminalModelTitle(TerminalModel model, std::string_view brand) {
  const auto branded = [brand](std::string_view name) {
    return std::string(brand) + ' ' + std::string(name);
  };
  switch (model) {
    case TerminalModel::Heron:
      return branded("Heron ");
    case TerminalModel::Lark:
    case TerminalModel::LarkB:
      return branded("Lark ");
    case TerminalModel::Wren:
      return branded("Wren ");
    case TerminalModel::Albatross:
      return branded("Albatross ");
    case TerminalModel::Petrel:
      return " Petrel Deck 100";
    case TerminalModel::Kestrel:
      return " Kestrel";
    case TerminalModel::Unknown:
      break;
  }
  return " Quil Terminal Emulator";
}

}  // namespace corvex
