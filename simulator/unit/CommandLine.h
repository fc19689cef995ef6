#pragma once

#include <optional>
#include <string>

namespace corvex::simulation {

/// The modem's command line. Collects characters, echoes them, and returns the line at CR.
///
/// Line feeds and other control characters are ignored; a backspace deletes the last character. A line longer
/// than kLimit characters is cut and marked, so that noise on the line cannot fill the memory.
class CommandLine {
 public:
  static constexpr std::size_t kLimit = 256;

  struct Line {
    std::string text;
    bool tooLong = false;
  };

  /// Processes a character and appends its echo to `echo`. Returns the line at CR, otherwise none.
  std::optional<Line> Take(char c, std::string& echo);

  void Clear();
  void SetEcho(bool on) { echo_ = on; }

 private:
  Line line_;
  bool echo_ = true;
};

}  // namespace corvex::simulation
