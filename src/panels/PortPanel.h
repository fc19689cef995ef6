#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Platform.h"
#include "settings/INIFuncs.h"
#include "window/TermControls.h"

namespace corvex {

// Conversions between up-down positions, counted from 0, and line parameters. A position outside the table is
// clamped to its nearest end.
std::int32_t SpeedFromIndex(int index);
/// Returns 0 for a speed that is not in the table.
int IndexFromSpeed(std::int32_t speed);
std::string StopBitsFromIndex(int index);
/// Returns 2 for any text other than "1" or "1.5".
int IndexFromStopBits(std::string_view text);

/// The four fields of the line parameters, in order, for example "115200,n,8,1".
enum class SettingsPart { Speed, Parity, DataBits, StopBits };

/// Returns one field of the port's parameters, unchanged. Empty if the field is missing.
std::string SettingsField(const SerialControl& comPort, SettingsPart part);
/// Replaces one of the four fields and keeps the others.
void SetSettingsField(SerialControl& comPort, SettingsPart part, std::string_view text);

/// The two panels of the port setup: the serial parameters and the LAN route.
///
/// The serial port object holds the serial parameters. A change takes effect with the next connect of this
/// run. It is written to the settings only when the user saves it.
class PortPanel {
 public:
  PortPanel(const Platform& platform, SettingsStore& settings, TermControls& window)
      : comPort_(platform.comPort), ports_(platform.serialPorts), settings_(settings), window_(window) {}

  /// Shows the port's parameters and what the system reports about its device.
  void Refresh();
  /// Shows the route from the settings.
  void ShowRoute();

  // The user has changed a value with its arrows.
  void StepPort();
  void StepSpeed();
  void StepDataBits();
  void StepStopBits();

  void StoreErb();    ///< Stores whether the link goes through an ERB unit.
  void StoreRoute();  ///< Stores all values of the LAN panel, the ERB choice included.

 private:
  SerialControl& comPort_;
  const SerialPorts& ports_;
  SettingsStore& settings_;
  TermControls& window_;
};

}  // namespace corvex
