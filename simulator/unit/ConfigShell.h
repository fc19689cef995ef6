#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "unit/CommandLine.h"
#include "unit/DeviceDatabase.h"
#include "unit/Timer.h"

namespace corvex::simulation {

/// A use of a command that goes wrong.
struct CommandFault {
  std::string command;
  int use = 0;  ///< counted from 1 since the unit exists; 0 for every use
};

struct ConfigOptions {
  int entries = DeviceDatabase::kFactoryEntries;  ///< number of entries of the generated configuration
  std::string password = "owner";
  bool owner = false;                      ///< The unit is at the owner level until `usermode` or a restart.
  std::vector<CommandFault> refused = {};  ///< answered with UF and not executed
  std::vector<CommandFault> muted = {};    ///< executed, but not answered
  EventLoop::Time delay{0};                ///< from a command to its answer
};

/// The unit's configuration mode, a command line without echo and without a prompt. Answers have no line
/// ends.
///
///   gfd                                       <dd>
///   gadd                                      <SL>002<dd>1 0 0 01 ...|<dd>2 0 0 02 ...|<EOL>
///   trypwd owner                              PWDOK
///   lckd  2                                   <dd>
///   updd  2  0  0 31  0 0 1  255 ... 0 0 0    <dduo>
///
/// A command that is unknown, malformed or not allowed gives <ddUF>. docs/simulator.md lists the commands.
///
/// An empty line after an update repeats the answer to the update, so that a lost answer does not leave a PC
/// waiting for ever. Otherwise an empty line has no effect.
class ConfigShell {
 public:
  using Send = std::function<void(std::string_view)>;
  static constexpr const char* kStart = "at+wquilconfig";

  /// Maximum number of bytes of waiting answers. An answer that does not fit is lost.
  static constexpr std::size_t kLimit = std::size_t{16} << 20;

  ConfigShell(EventLoop& loop, ConfigOptions options, bool lark, Send send);

  /// Returns whether a command of this name exists, including the one that starts the mode.
  static bool Knows(const std::string& command) { return Commands().contains(command); }

  /// Executes the command that starts the mode.
  void Start() { Run(kStart, {}); }
  /// Leaves the mode. The locks end and waiting answers are dropped. The level stays.
  void Stop();
  /// Leaves the mode and returns to the user level. The configuration stays.
  void Restart();
  bool Running() const { return running_; }

  void Execute(const CommandLine::Line& line);

  std::vector<std::string> Entries() const { return devices_.Entries(); }
  bool OwnerLevel() const { return owner_; }
  /// How often a command was received.
  int Uses(const std::string& command) const;
  /// The Id of the handset entry that was tested last.
  std::optional<int> Ringing() const { return ringing_; }
  /// The Id of the handset entry whose distress buzzer sounds.
  std::optional<int> Buzzing() const { return buzzing_; }

 private:
  using Handler = std::string (*)(ConfigShell&, std::string_view rest);
  struct Answer {
    EventLoop::Time due{0};
    std::string text;
    std::size_t sent = 0;
  };

  static const std::map<std::string, Handler, std::less<>>& Commands();
  void Run(std::string_view command, std::string_view rest);
  void Leave();
  std::string List() const;
  std::string TestHandset(std::string_view rest);
  std::string TestBuzzer(std::string_view rest);
  void Queue(std::string text);
  void SendDue();

  EventLoop& loop_;
  ConfigOptions options_;
  Send send_;
  DeviceDatabase devices_;
  std::map<std::string, int, std::less<>> uses_;
  std::string repeated_;  // the answer to an empty line
  std::optional<int> ringing_;
  std::optional<int> buzzing_;
  std::deque<Answer> answers_;
  std::size_t waiting_ = 0;
  Timer timer_;
  bool running_ = false;
  bool owner_;
};

}  // namespace corvex::simulation
