#include "trace/TraceLog.h"

#include <exception>
#include <filesystem>
#include <system_error>

#include "base/Text.h"

namespace corvex {

namespace fs = std::filesystem;

namespace {

/// Copies `file` to a temporary name and renames it to `copy`, so that a full disk does not damage the
/// previous copy. Returns false if the file has contents that could not be copied.
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
    if (fs::is_fifo(file, error)) return;  // opening a pipe would wait for a reader
  } catch (const std::exception&) {        // the system cannot represent the path
    return;
  }
  out_.rdbuf()->pubsetbuf(nullptr, 0);  // unbuffered: a record that fails is not written later
  out_.open(file, kept ? std::ios::binary : std::ios::binary | std::ios::app);
}

void TraceLog::WriteLine(std::string_view text) {
  if (!out_.is_open()) return;
  out_.clear();  // clears the error of a full disk
  out_ << std::string(text).append(kCrLf) << std::flush;
}

}  // namespace corvex
