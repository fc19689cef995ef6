#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "platform/EventLoop.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// Records the traffic of the link in a text file while the setting `wirelog` is on. The simulated unit can
/// play the file back. Example:
///
///   # corvex wire log 1
///   = 0.000 open lan 192.168.1.1:3000
///   > 0.012 "at+gmm\r\n"
///   < 0.034 "204417\r\nOK\r\n"
///   = 9.100 close
///
/// ">" marks bytes from the PC to the modem, "<" bytes from the modem. The number is the time in seconds
/// since the recording began.
///
/// A recording begins when the link is first opened and continues across reconnects until the program ends.
/// The last ten recordings of each copy of the program are kept. An old recording is deleted only after the
/// first line of the new one has been written.
///
/// Login passwords are never recorded, neither as sent nor as echoed. If the disk is full, lines are lost
/// without an error message. When there is room again, a comment in the file states how many lines were lost.
class WireLog {
 public:
  static constexpr int kKept = 10;  ///< Number of recordings that are kept.
  /// A recording that gets longer than this ends with a comment.
  static constexpr std::uintmax_t kMaxBytes = 64 << 20;

  WireLog(const EventLoop& loop, const SettingsStore& settings) : loop_(loop), settings_(settings) {}
  WireLog(const WireLog&) = delete;
  WireLog& operator=(const WireLog&) = delete;
  ~WireLog() { End(); }

  /// Records that the link was opened. `where` names the transport and the address.
  void Opened(std::string_view where);
  void Closed();
  /// Records an event on the line, such as "line lost".
  void Note(std::string_view what);
  void Sent(std::string_view bytes);

  // A serial port sends at its own speed, and bytes written to it may never leave. They are recorded with the
  // time at which they were seen to have left.

  /// To be called when `size` bytes have been queued. The recording shows them as `shown`.
  void Queued(std::string_view shown, std::size_t size);
  /// To be called when all queued bytes except the last `unsent` have left. Returns true if `unsent` is
  /// smaller than before.
  bool Unsent(std::size_t unsent);
  bool HasQueued() const { return !queued_.empty(); }
  /// To be called when the bytes that have not left are lost. Records their number.
  void DropQueued();

  void Received(std::string_view bytes);

  /// Recorded in place of a line with a password.
  static constexpr std::string_view kPassword = "(password)\r\n";
  /// To be called before a password is sent. Until ForgetSecret, its echo in received bytes is recorded as
  /// asterisks, even if it arrives in pieces.
  void HideEcho(std::string_view secret);
  void ForgetSecret();

 private:
  struct Output {
    std::string shown;
    std::size_t size;
  };

  bool Begin();
  void End();
  bool IsOwn(const std::filesystem::path& file) const;
  void RemoveOld();
  void Line(char kind, std::string_view text);
  bool Write(const std::string& lines);
  void BlotOutSecret();
  void WriteHeld(std::size_t count);

  const EventLoop& loop_;
  const SettingsStore& settings_;
  std::string path_;
  std::ofstream file_;
  EventLoop::Time began_{0};
  std::uintmax_t written_ = 0;  ///< Bytes in the file. Always complete lines.
  std::uint64_t lost_ = 0;      ///< Lines lost since the last line that was written.
  bool linkOpen_ = false;
  std::string where_;
  std::deque<Output> queued_;
  std::size_t queuedSize_ = 0;  ///< Total bytes of `queued_`.
  std::size_t unsent_ = 0;      ///< How many of them had not left at the last check.
  std::string secret_;
  std::string held_;  ///< Received, but not written yet. Between calls, never longer than the secret.
};

/// Returns the bytes as a quoted string. Printable ASCII characters are unchanged; all others are written as
/// \e \r \n \t or \xNN. Quote and backslash become \" and \\.
std::string QuoteBytes(std::string_view bytes);

}  // namespace corvex
