#include "trace/TraceLog.h"

#include <exception>
#include <filesystem>
#include <system_error>

#include "base/Text.h"

namespace corvex {

namespace fs = std::filesystem;

namespace {

/// Puts a copy in its place in one step, so that a disk that becomes full spares the copy of before. False if
/// the file holds something and there is no copy of it.
bool KeepCopy(const fs::path& file, const fs::path& copy) {
  std::error_code error;
  fs::path part = copy;
  part += ".part";
  if (fs::copy_file(file, part, fs::copy_options::overwrite_existing, error)) {
    fs::rename(part, copy, error);
    if (!error) return true;
  }
  if (fs::is_regular_file(part, error)) fs::remove(part, error);
  return fs::status(file, error).type() == fs::file_type::not_found || fs::is_empty(file, error);
}

}  // namespace

void TraceLog::Start(const std::string& file, const std::string& copy) {
  out_.close();
  out_.clear();
  bool kept = false;
  try {
    kept = KeepCopy(file, copy);
    std::error_code error;
    if (fs::is_fifo(file, error)) return;  // its opening would wait for a reader
  } catch (const std::exception&) {        // of a path that the system cannot name
    return;
  }
  out_.rdbuf()->pubsetbuf(nullptr, 0);  // a record that fails is not kept to be written behind the next one
  out_.open(file, kept ? std::ios::binary : std::ios::binary | std::ios::app);
}

void TraceLog::WriteLine(std::string_view text) {
  if (!out_.is_open()) return;
  out_.clear();  // of a disk that was full
  out_ << std::string(text).append(kCrLf) << std::flush;
}

}  // namespace corvex
