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

/// Records what passes over the link in a file that can be read in an editor and played back by the simulated
/// unit, while the setting `wirelog` says so:
///
///   # corvex wire log 1
///   = 0.000 open lan 192.168.1.1:3000
///   > 0.012 "at+gmm\r\n"
///   < 0.034 "204417\r\nOK\r\n"
///   = 9.100 close
///
/// ">" is from the PC to the modem, "<" from the modem, the number the seconds since the recording began. A
/// recording begins when the link is first opened and goes on over reconnects until the program ends; the
/// last ten of each copy of the program are kept, and an old one goes only when the new one stands on the
/// disk. A login password never gets into it, neither sent nor echoed. A line that a full disk refuses is
/// lost in silence; the recording goes on with a note when there is room again.
class WireLog {
 public:
  static constexpr int kKept = 10;
  static constexpr std::uintmax_t kMaxBytes = 64
                                              << 20;  ///< A recording ends with a note when it gets longer.

  WireLog(const EventLoop& loop, const SettingsStore& settings) : loop_(loop), settings_(settings) {}
  WireLog(const WireLog&) = delete;
  WireLog& operator=(const WireLog&) = delete;
  ~WireLog() { End(); }

  /// The link was opened; `where` tells the transport and the address.
  void Opened(std::string_view where);
  void Closed();
  /// Something happened to the line, such as "line lost".
  void Note(std::string_view what);
  void Sent(std::string_view bytes);

  // A serial port sends at its own pace, and what was written to it may never leave. It stands in the
  // recording from the time when it has been seen to have left.
  /// `size` bytes were queued, for which the text `shown` stands.
  void Queued(std::string_view shown, std::size_t size);
  /// All but the last `unsent` bytes of what was queued have left. True if these are fewer than before.
  bool Unsent(std::size_t unsent);
  bool HasQueued() const { return !queued_.empty(); }
  /// What has not left is lost, and recorded as a note of how much it was.
  void DropQueued();

  void Received(std::string_view bytes);

  /// What stands for a line with a password.
  static constexpr std::string_view kPassword = "(password)\r\n";
  /// A password is sent. Until ForgetSecret its echo, cut anywhere, is blotted out in what is received.
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
  std::uintmax_t written_ = 0;  ///< Bytes in the file, in whole lines.
  std::uint64_t lost_ = 0;      ///< Lines since the last one that was written.
  bool linkOpen_ = false;
  std::string where_;
  std::deque<Output> queued_;
  std::size_t queuedSize_ = 0;  ///< Bytes of all that is queued,
  std::size_t unsent_ = 0;      ///< and how many of them had not left when it was last looked.
  std::string secret_;
  std::string held_;  ///< Received and not written yet: no longer than the secret.
};

/// Bytes as a quoted text: \e \r \n \t \" \\ and \xNN, all printable characters of ASCII as they are.
std::string QuoteBytes(std::string_view bytes);

}  // namespace corvex
