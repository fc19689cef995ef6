#include "print/modSdi.h"

#include <exception>
#include <fstream>
#include <system_error>

#include "base/Text.h"
#include "base/TextFile.h"

namespace corvex {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kHeader = "Corvex generated file...................................\r\n";

std::optional<std::size_t> Place(std::size_t found) {
  return found == std::string_view::npos ? std::nullopt : std::optional(found);
}

std::optional<std::size_t> FindAsIs(std::string_view text, std::string_view what, std::size_t start,
                                    int direction) {
  if (what.empty()) return std::nullopt;
  if (direction == FindState::kDown) return Place(text.find(what, start));
  // Intentional: the first upward search skips a match that starts one character before the caret.
  return start < 2 ? std::nullopt : Place(text.rfind(what, start - 2));
}

}  // namespace

std::optional<std::size_t> FindPlace(std::string_view text, std::size_t selStart, const FindState& state) {
  const bool again = selStart == state.findLastPos && !state.findChanged;
  const std::size_t start = selStart + (again ? 1 : 0);
  if (state.findMatchCase) return FindAsIs(text, state.findText, start, state.findDirection);
  return FindAsIs(UpperCase(text), UpperCase(state.findText), start, state.findDirection);
}

bool WriteNote(Files& files, const std::string& path, std::string_view text) noexcept {
  try {
    std::string file;
    file.reserve(kHeader.size() + text.size() + kCrLf.size());
    file.append(kHeader).append(text).append(kCrLf);
    return !path.empty() && ReplaceFile(files, path, file);
  } catch (const std::exception&) {  // out of memory
    return false;
  }
}

bool AutoSave::Save(const std::function<std::string(std::size_t place)>& from) noexcept {
  try {
    const bool extends = written_ != kNothing && StillOurs();
    const std::size_t before = extends ? written_ : 0;
    const std::string added = from(before);
    const bool saved = extends ? Extend(added) : WriteNote(files_, path_, added);
    written_ = kNothing;
    if (!saved) return false;
    size_ = fs::file_size(path_);
    time_ = fs::last_write_time(path_);
    // If the size is wrong, the file was written in part, or another program has changed it. The next Save
    // then replaces it.
    const std::size_t all = before + added.size();
    if (size_ == kHeader.size() + all + kCrLf.size()) written_ = all;
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool AutoSave::StillOurs() const {
  return fs::is_regular_file(path_) && fs::file_size(path_) == size_ && fs::last_write_time(path_) == time_;
}

bool AutoSave::Extend(std::string_view added) const {
  std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
  if (!file) return false;
  file.seekp(static_cast<std::streamoff>(size_ - kCrLf.size()));  // overwrites the line end after the text
  file.write(added.data(), static_cast<std::streamsize>(added.size()));
  file.write(kCrLf.data(), static_cast<std::streamsize>(kCrLf.size()));
  file.close();
  return file.good();
}

}  // namespace corvex
