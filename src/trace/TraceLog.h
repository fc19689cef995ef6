#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace corvex {

/// A file that gets every record of a trace at once, so that a crash loses none. What cannot be done is told
/// to nobody, as the trace on the screen goes on: a record that a full disk refuses is lost alone, and where
/// the file cannot be opened nothing is written until the next start.
class TraceLog {
 public:
  /// Keeps a copy of what the file holds at another path, and empties it. If the copy fails, the copy of
  /// before stays, and what the file holds stays too: the log goes on at its end.
  void Start(const std::string& file, const std::string& copy);
  void Stop() { out_.close(); }
  /// Writes a text and ends the line.
  void WriteLine(std::string_view text);

 private:
  std::ofstream out_;
};

}  // namespace corvex
