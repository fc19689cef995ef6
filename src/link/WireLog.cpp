#include "link/WireLog.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <system_error>
#include <vector>

namespace corvex {

namespace {

/// "20060331-120000" of seconds since 1970 in local time.
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

bool IsRecording(const std::filesystem::path& file) {
  // Not as a narrow text: a file of the user's may have a name that the system cannot give as one.
  const std::u8string name = file.filename().u8string();
  return name.starts_with(u8"wire-") && name.ends_with(u8".log");
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
    file_.close();
    return;
  }
  if (!file_.is_open() && !Begin()) return;
  linkOpen_ = true;
  Line('=', "open " + std::string(where));
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
  // Of a text that was cut the part that has left, unless another text stands for it.
  const Output& first = queued_.front();
  const std::size_t left = queuedSize_ - unsent_;
  if (left > 0 && first.shown.size() == first.size && first.shown != kPassword) {
    Sent(std::string_view(first.shown).substr(0, left));
  }
  Note(std::to_string(unsent_) + " bytes never left");
  queued_.clear();
  queuedSize_ = unsent_ = 0;
}

void WireLog::Received(std::string_view bytes) {
  if (!file_.is_open() || bytes.empty()) return;
  held_ += bytes;
  if (!secret_.empty()) BlotOutSecret();
  // What may be the beginning of an echo waits for the rest of it.
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
  RemoveOld(settings_.AppFolder());
  const std::string name = "wire-" + Stamp(loop_.LocalSeconds()) + ".log";
  file_.open(settings_.InAppFolder(name), std::ios::binary | std::ios::app);
  if (!file_) return false;
  began_ = loop_.Now();
  written_ = 0;
  file_ << "# corvex wire log 1\n" << std::flush;
  return true;
}

void WireLog::RemoveOld(const std::filesystem::path& folder) {
  std::error_code failed;
  std::vector<std::filesystem::path> recordings;
  for (std::filesystem::directory_iterator it(folder, failed), end; !failed && it != end;
       it.increment(failed)) {
    if (IsRecording(it->path())) recordings.push_back(it->path());
  }
  std::sort(recordings.begin(), recordings.end());  // the names begin with the time
  for (std::size_t i = 0; i + kKept <= recordings.size(); ++i) std::filesystem::remove(recordings[i], failed);
}

void WireLog::Line(char kind, std::string_view text) {
  if (!file_.is_open()) return;
  const double seconds = std::chrono::duration<double>(loop_.Now() - began_).count();
  char time[32];
  std::snprintf(time, sizeof time, " %.3f ", seconds);
  // Flushed line by line: the recording of a session that ended badly is the one that is wanted.
  file_ << kind << time << text << '\n' << std::flush;
  written_ += static_cast<std::int64_t>(text.size());
  if (written_ > kMaxBytes) {
    file_ << "# the recording ends here: it has reached its greatest length\n";
    file_.close();
  } else if (!file_) {
    file_.close();
  }
}

}  // namespace corvex
