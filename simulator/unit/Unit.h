#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "unit/CommandLine.h"
#include "unit/ConfigShell.h"
#include "unit/KeyReader.h"
#include "unit/Mmi.h"
#include "unit/SoftwareLoader.h"
#include "unit/Status.h"
#include "unit/TestShell.h"
#include "unit/Timer.h"
#include "unit/Tour.h"
#include "unit/Tracer.h"

namespace corvex::simulation {

/// The unit's answer to the question whether it accepts new software.
enum class UpgradeAnswer { Protocol, Disallowed, PasswordDisallowed, Error };

struct UnitOptions {
  std::string modelReply = "204417";  ///< the part number in the reply to "at+gmm"
  UpgradeAnswer upgrade = UpgradeAnswer::Protocol;
  std::string_view mubInfo = "Master MUB on Master SDU";  ///< the MUB's name; the text must outlive the unit
  /// The unit's clock at the start, in seconds since 1970; by default the PC's local time.
  std::optional<std::int64_t> startTime = std::nullopt;
  EventLoop::Time tick = std::chrono::seconds(1);
  bool tour = false;  ///< Shows some screens automatically until a key is pressed.
  bool trace = true;  ///< Sends trace records unrequested until the PC switches trace on or off.
  std::uint32_t seed = 1;
  ConfigOptions config = {};
  LoaderOptions loader = {};
  EventLoop::Time restartTime = std::chrono::seconds(6);  ///< how long a restarting unit is deaf and silent
};

/// A simulated terminal unit, accessed over its line.
///
/// It starts as a modem that takes AT commands. One command starts the tag stream, in which the unit shows
/// its man-machine interface and takes keys. Others start the test shell and the configuration mode. The
/// character CAN or a hang-up returns to AT commands. "at+wquilreset" restarts the unit. "at+wquilcswload"
/// starts the downloader, which ends with a restart. A unit whose download went wrong does not start again.
class Unit {
 public:
  using Options = UnitOptions;
  using Send = std::function<void(std::string_view)>;

  Unit(EventLoop& loop, UnitOptions options, Send send);

  void Receive(std::string_view bytes);
  /// Called when the line connects or disconnects. Must not be called from within Send.
  void LineUp();
  void LineDown();
  bool InTagMode() const { return tagMode_; }
  /// Returns the name of the current screen, see Screens; empty outside a session.
  std::string_view Shows() const { return mmi_.Shows(); }
  const ConfigShell& Config() const { return config_; }
  const SoftwareLoader& Loader() const { return loader_; }
  /// Returns whether the unit has no software that it can start.
  bool Dead() const { return dead_; }
  /// How often the unit was restarted.
  int Restarts() const { return restarts_; }

  /// Called when the unit restarts. A unit on a LAN then drops its connection; a serial line only goes
  /// silent.
  std::function<void()> onRestart;

 private:
  void Cancel();
  void TakeLine(const CommandLine::Line& line);
  void Execute(const CommandLine::Line& line, const std::string& command);
  std::string Answer(std::string_view command);
  void Restart();
  void Boot(std::optional<int> version);
  void StartTagMode();
  void EndTagMode();
  void Press(Key key);
  void Tick();

  UnitOptions options_;
  Send send_;
  CommandLine commandLine_;
  Status status_;
  Mmi mmi_;
  KeyReader keys_;
  KeyReader tourKeys_;
  Tour tour_;
  Tracer tracer_;
  TestShell testShell_;
  ConfigShell config_;
  SoftwareLoader loader_;
  Timer restarting_;
  Timer ticker_;
  bool tagMode_ = false;
  bool dead_ = false;
  bool tracesUnasked_;
  unsigned ticks_ = 0;
  int restarts_ = 0;
};

}  // namespace corvex::simulation
