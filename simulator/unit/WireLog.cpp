#include "unit/WireLog.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace corvex::simulation {
namespace {

constexpr std::string_view kHeader = "# corvex wire log 1";
constexpr double kLatest = 1e6;  // seconds; a later time is a typing error

std::string_view TakeWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const std::string_view word = text.substr(0, text.find(' '));
  text.remove_prefix(word.size());
  return word;
}

std::optional<double> Seconds(std::string_view word) {
  double value = 0;
  const auto [end, failure] = std::from_chars(word.data(), word.data() + word.size(), value);
  const bool usable =
      failure == std::errc() && end == word.data() + word.size() && value >= 0 && value <= kLatest;
  return usable ? std::optional(value) : std::nullopt;
}

/// Returns the bytes of a quoted text, or an error message.
std::variant<std::string, const char*> Unquote(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.empty() || text.front() != '"') return "the bytes must be in quotes";
  std::string bytes;
  for (std::size_t i = 1; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"') {
      if (text.find_first_not_of(' ', i + 1) != std::string_view::npos)
        return "unexpected text after the closing quote";
      return bytes;
    }
    if (c < ' ' || c > '~') return "a byte outside 32 to 126 must be written as \\xNN";
    if (c != '\\') {
      bytes += c;
      continue;
    }
    constexpr std::string_view kNames = "ernt\"\\";
    constexpr std::string_view kBytes = "\x1b\r\n\t\"\\";
    const char name = ++i < text.size() ? text[i] : ' ';
    if (const std::size_t known = kNames.find(name); known != std::string_view::npos) {
      bytes += kBytes[known];
      continue;
    }
    unsigned value = 0;
    const std::string_view digits = text.substr(std::min(i + 1, text.size()), 2);
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (name != 'x' || digits.size() != 2 || failure != std::errc() || end != digits.data() + 2) {
      return "unknown escape; valid are \\e \\r \\n \\t \\\" \\\\ and \\xNN";
    }
    bytes += static_cast<char>(value);
    i += 2;
  }
  return "the closing quote is missing";
}

/// Returns the event on a line, or an error message.
std::variant<WireEvent, const char*> ParseLine(std::string_view line) {
  const std::string_view mark = TakeWord(line);
  const auto at = Seconds(TakeWord(line));
  if (mark != "=" && mark != ">" && mark != "<") return "a line must start with #, =, > or <";
  if (!at) return "a time in seconds must follow";
  if (mark == "=") {
    const std::string_view what = line.substr(std::min(line.find_first_not_of(' '), line.size()));
    if (what.empty()) return "the event is missing, such as open or close";
    WireEvent::Kind kind = WireEvent::Kind::Note;
    if (what == "open" || what.starts_with("open ")) kind = WireEvent::Kind::Open;
    if (what == "close") kind = WireEvent::Kind::Close;
    if (what == "line lost" || what == "closed by the other side") kind = WireEvent::Kind::Lost;
    return WireEvent{kind, *at, {}};
  }
  auto bytes = Unquote(line);
  if (const auto* error = std::get_if<const char*>(&bytes)) return *error;
  const auto kind = mark == ">" ? WireEvent::Kind::ToModem : WireEvent::Kind::FromModem;
  return WireEvent{kind, *at, std::get<std::string>(std::move(bytes))};
}

}  // namespace

std::variant<std::vector<WireEvent>, WireLogError> ParseWireLog(std::string_view text) {
  std::vector<WireEvent> events;
  for (int number = 1; number == 1 || !text.empty(); ++number) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (number == 1 && line != kHeader) {
      return WireLogError{number, "the first line must be \"" + std::string(kHeader) + "\""};
    }
    if (line.starts_with('#') || line.find_first_not_of(' ') == std::string_view::npos) continue;
    auto parsed = ParseLine(line);
    if (const auto* error = std::get_if<const char*>(&parsed)) return WireLogError{number, *error};
    WireEvent& event = std::get<WireEvent>(parsed);
    if (!events.empty() && event.at < events.back().at)
      return WireLogError{number, "the time is earlier than that of the previous event"};
    events.push_back(std::move(event));
  }
  return events;
}

}  // namespace corvex::simulation
