#include "unit/CommandLine.h"

#include <utility>

namespace corvex::simulation {

std::optional<CommandLine::Line> CommandLine::Take(char c, std::string& echo) {
  constexpr char kBackspace = 8;
  constexpr char kDelete = 127;
  if (c == '\r') {
    if (echo_) echo += c;
    return std::exchange(line_, {});
  }
  if (c == kBackspace || c == kDelete) {
    if (line_.text.empty()) return std::nullopt;
    line_.text.pop_back();
    if (echo_) echo += "\b \b";
    return std::nullopt;
  }
  if (static_cast<unsigned char>(c) < ' ') return std::nullopt;
  if (line_.text.size() >= kLimit) {
    line_.tooLong = true;
    return std::nullopt;
  }
  line_.text += c;
  if (echo_) echo += c;
  return std::nullopt;
}

void CommandLine::Clear() {
  line_ = {};
}

}  // namespace corvex::simulation
