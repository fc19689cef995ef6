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

/// Loads the serial parameters from the settings into the port. On the first start of the program, sets port
/// 1, "115200,n,8,1" and hardware handshaking, and saves these.
void LoadPortSettings(SerialControl& comPort, SettingsStore& settings);
void SavePortSettings(const SerialControl& comPort, SettingsStore& settings);

/// Returns the device for a COM number: the device named in the settings, otherwise the default of this
/// system.
std::string ComDeviceName(const SettingsStore& settings, int number);

/// Result of probing for the modem.
enum class ProbeWord {
  Ok,          ///< The modem answered.
  None,        ///< Nothing was received, or the link could not be opened.
  Busy,        ///< Opening the link could not even be started; see TerminalLink::OpenRefused.
  CheckSpeed,  ///< The received text contains neither OK nor ERROR. The line speed may be wrong.
};

/// The modem's answer to the question whether its software can be upgraded.
enum class UpgradeOffer {
  Unknown,     ///< No answer, or an unknown answer.
  Allowed,     ///< An upgrade can start.
  NoPassword,  ///< An upgrade requires a password first.
  Refused,     ///< The modem does not allow an upgrade.
};

/// Detects whether a modem answers on the link, which model it is, and whether it allows a software upgrade.
class ModemProbe {
 public:
  ModemProbe(EventLoop& loop, SessionState& state, MainState& main, TerminalLink& link,
             ReceiveBuffer& received, const SettingsStore& settings)
      : loop_(loop), state_(state), main_(main), link_(link), received_(received), settings_(settings) {}

  /// Opens the link and probes for the modem. On Ok, `MainState::applicationTitle` names the terminal, and
  /// `named` and `upgrade` have been raised. The current mode must not dispatch received bytes, because this
  /// function reads them.
  ProbeWord DetectModem();

  Event<> named;  ///< The title names the terminal. The question about upgrades follows.
  /// Raised several times: with Unknown until an answer has arrived or the time is over, then with the
  /// result.
  Event<UpgradeOffer> upgrade;

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
