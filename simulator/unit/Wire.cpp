#include "unit/Wire.h"

#include <algorithm>

namespace corvex::simulation {
namespace {

std::string Digits(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

}  // namespace

std::string Packet(std::string_view tag, std::string_view payload) {
  std::string packet = "<tml><";
  packet += tag;
  packet += '>';
  packet += payload;
  packet += "</tml>";
  return packet;
}

std::string MoveTo(int row, int column) {
  return "\x1b[" + std::to_string(row) + ';' + std::to_string(column) + 'H';
}

std::string ListRecord(std::string_view title, const std::vector<ListEntry>& entries, int current) {
  std::string record = "<Title>";
  record += title;
  for (const ListEntry& entry : entries) {
    record += '<' + std::to_string(entry.id) + '>';
    record += entry.text;
  }
  return record + "<INDEXLINE>" + std::to_string(current);
}

std::string MenuEntryText(int number, std::string_view label, int icon) {
  std::string text = Digits(number, 3);
  text += label;
  return text + '|' + std::to_string(icon);
}

std::string SoftKeyLine(const std::array<SoftKeyLabel, 4>& keys) {
  std::string line;
  for (const SoftKeyLabel& key : keys) {
    if (&key != &keys.front()) line += '|';
    std::string text(key.text);
    std::replace(text.begin(), text.end(), ' ', '\x7f');
    line += text + '|' + std::to_string(key.code);
  }
  return line;
}

std::string TraceRecord(std::string_view text) {
  constexpr std::size_t kShortest = 2;
  constexpr std::size_t kLongest = 199;
  const std::size_t shown = std::clamp(text.size(), kShortest, kLongest);
  return "<Trace>" + Digits(static_cast<int>(shown) + 1, 4) + Fit(text, static_cast<int>(shown)) + "\r\n";
}

std::string Fit(std::string_view text, int width) {
  std::string fitted(text.substr(0, static_cast<std::size_t>(width)));
  fitted.resize(static_cast<std::size_t>(width), ' ');
  return fitted;
}

}  // namespace corvex::simulation
