#include "link/WireLog.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <system_error>
#include <vector>

namespace corvex {

namespace {

constexpr std::string_view kOpen = "open ";

/// Formats a local time, in seconds since 1970, as "20060331-120000".
std::string Stamp(std::int64_t localSeconds) {
  using namespace std::chrono;
  const sys_seconds time{seconds(localSeconds)};
  const auto day = floor<days>(time);
  const year_month_day date{day};
  const hh_mm_ss clock{time - day};
  char text[32];
  std::snprintf(text, sizeof text, "%04d%02u%02u-%02d%02d%02d", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text;
}

}  // namespace

std::string QuoteBytes(std::string_view bytes) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string text = "\"";
  for (const char c : bytes) {
    const auto u = static_cast<unsigned char>(c);
    switch (c) {
      case '\x1B':
        text += "\\e";
        break;
      case '\r':
        text += "\\r";
        break;
      case '\n':
        text += "\\n";
        break;
      case '\t':
        text += "\\t";
        break;
      case '"':
        text += "\\\"";
        break;
      case '\\':
        text += "\\\\";
        break;
      default:
        if (u >= 32 && u < 127) {
          text += c;
        } else {
          text += "\\x";
          text += kHex[u >> 4];
          text += kHex[u & 15];
        }
    }
  }
  return text += '"';
}

void WireLog::Opened(std::string_view where) {
  if (!settings_.logging.wirelog.Get()) {
    End();
    return;
  }
  if (!file_.is_open() && !Begin()) return;
  linkOpen_ = true;
  where_ = where;
  Line('=', std::string(kOpen) + where_);
}

void WireLog::Closed() {
  ForgetSecret();
  if (!linkOpen_) return;
  linkOpen_ = false;
  Line('=', "close");
}

void WireLog::Note(std::string_view what) {
  Line('=', what);
}

void WireLog::Sent(std::string_view bytes) {
  Line('>', QuoteBytes(bytes));
}

void WireLog::Queued(std::string_view shown, std::size_t size) {
  if (!file_.is_open() || size == 0) return;
  queued_.push_back({std::string(shown), size});
  queuedSize_ += size;
  unsent_ += size;
}

bool WireLog::Unsent(std::size_t unsent) {
  const bool fewer = unsent < unsent_;
  if (fewer) unsent_ = unsent;
  while (!queued_.empty() && queuedSize_ - queued_.front().size >= unsent_) {
    Sent(queued_.front().shown);
    queuedSize_ -= queued_.front().size;
    queued_.pop_front();
  }
  return fewer;
}

void WireLog::DropQueued() {
  if (queued_.empty()) return;
  // If a part of the first text has left, record that part, unless `shown` is a substitute for it.
  const Output& first = queued_.front();
  const std::size_t left = queuedSize_ - unsent_;
  if (left > 0 && first.shown.size() == first.size && first.shown != kPassword) {
    Sent(std::string_view(first.shown).substr(0, left));
  }
  Note(std::to_string(unsent_) + " bytes not sent");
  queued_.clear();
  queuedSize_ = unsent_ = 0;
}

void WireLog::Received(std::string_view bytes) {
  if (!file_.is_open() || bytes.empty()) return;
  held_ += bytes;
  if (!secret_.empty()) BlotOutSecret();
  // The end of the text may be the start of an echo. Hold that part until the rest arrives.
  std::size_t waits = std::min(held_.size(), secret_.size());
  while (waits > 0 && !held_.ends_with(std::string_view(secret_).substr(0, waits))) --waits;
  WriteHeld(held_.size() - waits);
}

void WireLog::HideEcho(std::string_view secret) {
  ForgetSecret();
  secret_ = secret;
}

void WireLog::ForgetSecret() {
  WriteHeld(held_.size());
  secret_.clear();
}

void WireLog::BlotOutSecret() {
  for (std::size_t at = held_.find(secret_); at != std::string::npos; at = held_.find(secret_, at)) {
    held_.replace(at, secret_.size(), secret_.size(), '*');
    at += secret_.size();
  }
}

void WireLog::WriteHeld(std::size_t count) {
  if (count == 0) return;
  Line('<', QuoteBytes(std::string_view(held_).substr(0, count)));
  held_.erase(0, count);
}

bool WireLog::Begin() {
  path_ = settings_.InAppFolder(settings_.OwnName("wire-" + Stamp(loop_.LocalSeconds()), ".log"));
  file_.clear();
  file_.rdbuf()->pubsetbuf(nullptr, 0);  // unbuffered, so that a failed write is not repeated later
  file_.open(path_, std::ios::binary | std::ios::app);
  if (!file_) return false;
  began_ = loop_.Now();
  std::error_code failed;
  const std::uintmax_t size =
      std::filesystem::file_size(path_, failed);  // not 0 if another recording began in the same second
  written_ = failed ? 0 : size;
  lost_ = 0;
  return true;
}

void WireLog::End() {
  if (!file_.is_open()) return;
  file_.close();
  std::error_code ignored;
  if (written_ == 0) std::filesystem::remove(path_, ignored);
}

/// Returns whether `file` is a recording of this copy of the program. Recordings of other copies
/// may still be in progress and must not be deleted.
bool WireLog::IsOwn(const std::filesystem::path& file) const {
  constexpr std::string_view kStamped = "wire-00000000-000000";
  const std::string shape = settings_.OwnName(kStamped, ".log");
  // Compared as UTF-8: another file in the folder may have a name that is not valid as a narrow string.
  const std::u8string name = file.filename().u8string();
  if (name.size() != shape.size()) return false;
  for (std::size_t i = 0; i < shape.size(); ++i) {
    const bool anyDigit = i < kStamped.size() && shape[i] == '0';
    if (anyDigit ? name[i] < u8'0' || name[i] > u8'9' : name[i] != static_cast<char8_t>(shape[i]))
      return false;
  }
  return true;
}

void WireLog::RemoveOld() {
  std::error_code failed;
  std::vector<std::filesystem::path> recordings;
  for (std::filesystem::directory_iterator it(settings_.AppFolder(), failed), end; !failed && it != end;
       it.increment(failed)) {
    if (IsOwn(it->path())) recordings.push_back(it->path());
  }
  std::sort(recordings.begin(), recordings.end());  // oldest first, because the names contain the time
  for (std::size_t i = 0; i + kKept < recordings.size(); ++i) std::filesystem::remove(recordings[i], failed);
}

void WireLog::Line(char kind, std::string_view text) {
  if (!file_.is_open()) return;
  const double seconds = std::chrono::duration<double>(loop_.Now() - began_).count();
  char time[32];
  std::snprintf(time, sizeof time, " %.3f ", seconds);
  const bool first = written_ == 0;
  std::string lines = first ? "# corvex wire log 1\n" : "";
  // Playback begins at a line that opens the link.
  if (first && !text.starts_with(kOpen))
    lines.append("=").append(time).append(kOpen).append(where_).append("\n");
  if (lost_ > 0) lines += "# lines that could not be written: " + std::to_string(lost_) + '\n';
  lines.append(1, kind).append(time).append(text).append(1, '\n');
  // Written immediately: recordings matter most when the session ended badly.
  if (!Write(lines)) {
    ++lost_;
    return;
  }
  lost_ = 0;
  if (first) RemoveOld();
  if (written_ > kMaxBytes) {
    Write("# the recording ends here: it has reached its maximum length\n");
    End();
  }
}

/// Writes all of `lines` or nothing, because a partial line would corrupt the lines after it.
bool WireLog::Write(const std::string& lines) {
  file_.clear();
  file_ << lines << std::flush;
  if (file_) {
    written_ += lines.size();
    return true;
  }
  std::error_code ignored;
  std::filesystem::resize_file(path_, written_, ignored);
  return false;
}

}  // namespace corvex
