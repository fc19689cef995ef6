#pragma once

#include <cstdint>
#include <string>

#include "base/Event.h"
#include "link/modComSock.h"
#include "platform/EventLoop.h"
#include "platform/Transports.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"
#include "state/SessionState.h"

namespace corvex {

/// Loads the serial parameters from the settings into the port. At the very first start they are port 1,
/// "115200,n,8,1" and hardware handshaking, which are saved at once.
void LoadPortSettings(SerialControl& comPort, SettingsStore& settings);
void SavePortSettings(const SerialControl& comPort, SettingsStore& settings);

/// The device behind a COM number: the one that the settings name, or a likely one of this system.
std::string ComDeviceName(const SettingsStore& settings, int number);

/// What a probe of the modem found.
enum class ProbeWord {
  Ok,          ///< The modem answered.
  None,        ///< Nothing came back, or the link could not be opened.
  Busy,        ///< The link could not even begin to open.
  CheckSpeed,  ///< Something came back, but neither OK nor ERROR: the line speed may be wrong.
};

/// What the modem says about a software upgrade.
enum class UpgradeOffer {
  Unknown,     ///< No answer, or none that can be understood.
  Allowed,     ///< An upgrade can begin.
  NoPassword,  ///< The modem can be upgraded, but not until a password has been given.
  Refused,     ///< This modem cannot be upgraded in this way.
};

/// Finds out whether a modem is on the link, which one it is, and whether it allows a software upgrade.
class ModemProbe {
 public:
  ModemProbe(EventLoop& loop, SessionState& state, MainState& main, TerminalLink& link,
             ReceiveBuffer& received, const SettingsStore& settings)
      : loop_(loop), state_(state), main_(main), link_(link), received_(received), settings_(settings) {}

  /// Opens the link and probes. On Ok, `MainState::applicationTitle` names the terminal, and `named` and
  /// `upgrade` have been called. The mode must be one that leaves received bytes to the caller.
  ProbeWord DetectModem();

  Event<> named;                ///< The terminal has been named; the question for upgrades follows.
  Event<UpgradeOffer> upgrade;  ///< An answer has come, or none in time. Called several times.

 private:
  ProbeWord AskModel();
  void AskUpgrade();

  EventLoop& loop_;
  SessionState& state_;
  MainState& main_;
  TerminalLink& link_;
  ReceiveBuffer& received_;
  const SettingsStore& settings_;
};

}  // namespace corvex
