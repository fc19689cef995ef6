#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Platform.h"
#include "settings/INIFuncs.h"
#include "window/TermControls.h"

namespace corvex {

// What the steps of the panel stand for, counted from 0. An index beyond a table is that of its nearer end.
std::int32_t SpeedFromIndex(int index);
/// 0 for a speed that is not in the table.
int IndexFromSpeed(std::int32_t speed);
std::string StopBitsFromIndex(int index);
/// 2 for a text that is neither "1" nor "1.5".
int IndexFromStopBits(std::string_view text);

/// The fields of the line parameters, as in "115200,n,8,1".
enum class SettingsPart { Speed, Parity, DataBits, StopBits };

/// A field of the port's parameters as it stands there; empty if it is not there.
std::string SettingsField(const SerialControl& comPort, SettingsPart part);
/// Replaces one of the four fields; the others stay as they are.
void SetSettingsField(SerialControl& comPort, SettingsPart part, std::string_view text);

/// The two panels of the port setup: the serial parameters, and the route over the LAN.
///
/// The serial port itself holds its parameters: a step takes effect with the next connect of this run, and
/// nothing reaches the settings until they are saved.
class PortPanel {
 public:
  PortPanel(const Platform& platform, SettingsStore& settings, TermControls& window)
      : comPort_(platform.comPort), ports_(platform.serialPorts), settings_(settings), window_(window) {}

  /// Shows the port's parameters, and what of the device behind its number the system tells.
  void Refresh();
  /// Shows the route that the settings name.
  void ShowRoute();

  // The user has stepped one of the values.
  void StepPort();
  void StepSpeed();
  void StepDataBits();
  void StepStopBits();

  void StoreErb();    ///< Stores whether the link goes through an ERB unit.
  void StoreRoute();  ///< That, and all else of the LAN panel.

 private:
  SerialControl& comPort_;
  const SerialPorts& ports_;
  SettingsStore& settings_;
  TermControls& window_;
};

}  // namespace corvex
