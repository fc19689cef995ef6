#pragma once

#include <optional>
#include <string>

namespace corvex::simulation {

/// The line on which a modem takes its commands: collects characters, echoes them, and hands out a line at
/// CR.
///
/// A line feed and the other control characters are passed over; a backspace takes the last character back. A
/// line that gets too long keeps what fits and is marked, so that noise on the line cannot fill the memory.
class CommandLine {
 public:
  static constexpr std::size_t kLimit = 256;

  struct Line {
    std::string text;
    bool tooLong = false;
  };

  /// Takes a character and appends to `echo` what goes back for it.
  std::optional<Line> Take(char c, std::string& echo);

  void Clear();
  void SetEcho(bool on) { echo_ = on; }

 private:
  Line line_;
  bool echo_ = true;
};

}  // namespace corvex::simulation
