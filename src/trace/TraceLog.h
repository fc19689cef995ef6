#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace corvex {

/// A log file for trace records. Each record is written immediately, so a crash loses none.
///
/// Errors are not reported, because the trace on the screen continues. If the disk is full, only the records
/// that do not fit are lost. If the file cannot be opened, nothing is written until the next Start.
class TraceLog {
 public:
  /// Copies the contents of `file` to `copy`, then empties `file` and opens it for the new records. If
  /// copying fails, both files keep their contents, and the new records are appended to `file`.
  void Start(const std::string& file, const std::string& copy);
  void Stop() { out_.close(); }
  /// Writes the text and a line end.
  void WriteLine(std::string_view text);

 private:
  std::ofstream out_;
};

}  // namespace corvex
