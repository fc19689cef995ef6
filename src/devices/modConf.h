#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "devices/DeviceRecord.h"
#include "devices/SessionOutput.h"
#include "platform/EventLoop.h"
#include "platform/Services.h"
#include "state/ReceiveBuffer.h"

namespace corvex {

/// What an exchange with the terminal is waiting for, and how far a replacement of the configuration is.
struct ConfigProgress {
  std::string awaited = {};  ///< The reply that the exchange waits for. Empty if none.
  std::int64_t since = 0;    ///< When the wait began, as EventLoop::LocalSeconds.
  int repeats = 0;           ///< How often the request was sent again in this wait.
  int written = 0;           ///< Entries that have been sent.
  int total = 0;             ///< Entries of the replacement. 0: no replacement is in progress.
};

/// The terminal's configuration mode: short commands, each with a tagged reply. Intentional: a command
/// without a reply is repeated without end, every 0.4 seconds. All functions wait by pumping events. Every
/// wait can be abandoned (see EventLoop::Wait), and a pause over midnight continues. Only one exchange may be
/// in progress at a time, because each takes the bytes that it finds. The caller ensures this.
class ConfigDialogue {
 public:
  /// A longer reply to a request of the configuration is cut, in bytes.
  static constexpr std::size_t kMostReply = std::size_t{16} << 20;

  ConfigDialogue(EventLoop& loop, SessionOutput& output, ReceiveBuffer& received, Dialogs& dialogs)
      : loop_(loop), output_(output), received_(received), dialogs_(dialogs) {}

  /// Called when `progress` has changed.
  std::function<void()> onProgress;
  const ConfigProgress& progress() const { return progress_; }

  // Each of these sends a command and waits for its reply. They return false if the terminal refuses the
  // command. The user then sees "Update failed".

  bool EnterConfigMode();
  /// Returns whether the terminal is in its configuration mode.
  bool ProbeConfig();
  bool LockConfig();
  bool ClearConfig();
  bool CommitConfig();
  bool LockDevice(std::int16_t id);
  /// Locks and removes an entry. If the lock is refused, nothing more is sent.
  bool RemoveDevice(std::int16_t id);
  /// Writes one entry, with the command for its kind.
  bool WriteRecord(const DeviceRecord& record);

  /// Reads the whole configuration into `configLines`. Returns false if no complete reply has come. The list
  /// is empty then, and the user sees no message.
  bool ReadConfig();
  /// Replaces the whole configuration by `configLines`. Refused entries are reported to the user and left
  /// out. Returns false if nothing was written.
  bool WriteConfigList();
  /// Replaces the configuration by the factory defaults. Does nothing more after a refusal.
  void RestoreFactory();
  /// Leaves the configuration mode and restarts the terminal. Calls `status` with each step.
  void RestartTerminal(const std::function<void(std::string_view)>& status);

  // These send a command and do not wait.

  void TestHandset(std::int16_t id);
  void StartBuzzer(std::int16_t id);
  void StopBuzzer(std::int16_t id);
  void LeaveOwnerMode();
  void Quit();

  /// The configuration: one entry in its wire form each. The only copy in the program.
  std::vector<std::string> configLines;
  /// The configuration as it was last read completely. Empty optional: not yet.
  const std::optional<std::vector<std::string>>& LastRead() const { return lastRead_; }

 private:
  /// Shows a wait in `progress` while it lasts.
  class Awaited {
   public:
    Awaited(ConfigDialogue& dialogue, std::string_view reply);
    ~Awaited();
    void Repeat();

   private:
    ConfigDialogue& dialogue_;
  };

  bool AwaitReply(std::string_view pattern, std::string_view resend);
  bool SendAwait(std::string_view command, std::string_view pattern);
  bool AwaitUpdated();
  std::string FetchConfigText();
  void SendUpdd(const DeviceRecord& record);
  void SendUpta(const DeviceRecord& record);
  void SendUphs(const DeviceRecord& record);
  void Report() const;

  EventLoop& loop_;
  SessionOutput& output_;
  ReceiveBuffer& received_;
  Dialogs& dialogs_;
  ConfigProgress progress_;
  std::optional<std::vector<std::string>> lastRead_;
};

/// Takes the entries out of the terminal's reply to a request of its configuration. Returns nullopt if the
/// reply has no begin or no end, or is not a configuration (see AddEntry).
std::optional<std::vector<std::string>> ParseConfigReply(std::string_view reply);

}  // namespace corvex
