#pragma once

#include <cstdint>
#include <string>

#include "link/modComSock.h"
#include "platform/Platform.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"
#include "state/SessionState.h"
#include "window/TermControls.h"

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

/// Finds out whether a modem is on the link and which one, and whether it allows a software upgrade.
class ModemProbe {
 public:
  ModemProbe(TermControls& window, SessionState& state, MainState& main, TerminalLink& link,
             ReceiveBuffer& received, const SettingsStore& settings)
      : window_(window), state_(state), main_(main), link_(link), received_(received), settings_(settings) {}

  /// Opens the link, probes, and on Ok names the terminal and sets the menu entry of the upgrade. The main
  /// window's mode must be one that leaves received bytes to the caller.
  ProbeWord DetectModem();

 private:
  ProbeWord AskModel();
  void AskUpgrade();

  TermControls& window_;
  SessionState& state_;
  MainState& main_;
  TerminalLink& link_;
  ReceiveBuffer& received_;
  const SettingsStore& settings_;
};

}  // namespace corvex
