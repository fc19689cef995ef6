#include "ports/LineSettings.h"

#include "base/Text.h"

namespace corvex {

std::optional<LineSettings> ParseLineSettings(std::string_view text) {
  const auto fields = Split(text, ',');
  if (fields.size() != 4 || TrimBlanks(fields[1]).size() != 1) return {};
  const auto speed = ToInt32(fields[0]);
  const auto dataBits = ToInt16(fields[2]);
  if (!speed || *speed <= 0 || !dataBits || *dataBits < 5 || *dataBits > 8) return {};

  LineSettings settings{.speed = *speed, .dataBits = *dataBits};
  switch (UpperCase(TrimBlanks(fields[1]).front())) {
    case 'N':
      break;
    case 'E':
      settings.parity = Parity::Even;
      break;
    case 'O':
      settings.parity = Parity::Odd;
      break;
    case 'M':
      settings.parity = Parity::Mark;
      break;
    case 'S':
      settings.parity = Parity::Space;
      break;
    default:
      return {};
  }
  const std::string_view stopBits = TrimBlanks(fields[3]);
  if (stopBits == "1.5") {
    settings.stopBits = StopBits::OneAndHalf;
  } else if (stopBits == "2") {
    settings.stopBits = StopBits::Two;
  } else if (stopBits != "1") {
    return {};
  }
  return settings;
}

}  // namespace corvex
