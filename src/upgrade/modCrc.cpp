#include "upgrade/modCrc.h"

#include <algorithm>

#include "base/Text.h"

namespace corvex {

namespace {

/// Rounds to a whole number that a signed 16-bit variable can hold, halves to even.
int Whole(double value) {
  return static_cast<int>(RoundHalfEven(std::clamp(value, 0.0, 32767.0)));
}

std::string HexByte(unsigned byte) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  return {'&', 'H', kDigits[byte >> 4], kDigits[byte & 15], ','};
}

}  // namespace

std::array<std::uint16_t, 256> CrcTable() {
  std::array<std::uint16_t, 256> table{};
  for (unsigned n = 0; n < table.size(); ++n) {
    unsigned entry = n;
    for (int bit = 0; bit < 8; ++bit) entry = (entry >> 1) ^ (entry & 1 ? 0xA001u : 0);
    table[n] = static_cast<std::uint16_t>(entry);
  }
  return table;
}

std::string CrcTableText() {
  std::string text;
  int column = 0;
  for (const std::uint16_t entry : CrcTable()) {
    text += HexByte(entry >> 8) + HexByte(entry & 0xFF);
    if (++column % 8 == 0) text += '\n';
  }
  return text;
}

std::string TimeRemaining(const std::string& lastDuration, float started, float now) {
  const int total = Whole(NumericPrefix(lastDuration));
  const int elapsed = Whole(now - started);
  const int left = std::max(total - elapsed, 0);
  const int seconds = left % 60;
  const int minutes = (left - seconds) / 60;
  // Intentional: there is no singular form.
  const std::string text = std::to_string(seconds) + " seconds";
  return minutes >= 1 ? std::to_string(minutes) + " minutes and " + text : text;
}

}  // namespace corvex
