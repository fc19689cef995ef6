#include "link/EnumSerialPorts.h"

#include <algorithm>
#include <vector>

#include "link/modCommSupport.h"

namespace corvex {

namespace {

/// Returns a line with the first port numbers that have a device, at most four, or "" if none has a device.
std::string PresentPorts(const SerialPorts& ports, const SettingsStore& settings) {
  constexpr int kMostNamed = 4;
  const std::vector<std::string> devices = ports.Devices();
  std::string text;
  int named = 0;
  for (int number = kFirstComPort; number <= kLastComPort && named < kMostNamed; ++number) {
    const std::string device = ComDeviceName(settings, number);
    if (std::find(devices.begin(), devices.end(), device) == devices.end()) continue;
    text += (text.empty() ? "\nPresent: com " : ", com ") + std::to_string(number) + " (" + device + ')';
    ++named;
  }
  return text;
}

}  // namespace

std::int32_t PortExists(const SerialPorts& ports, const SettingsStore& settings, int number) {
  return ports.Probe(ComDeviceName(settings, number)).state == PortState::Absent ? 0 : 1;
}

std::string DescribePort(const SerialPorts& ports, const SettingsStore& settings, int number) {
  const std::string device = ComDeviceName(settings, number);
  const PortInfo info = ports.Probe(device);
  const std::string named = info.description.empty() ? device : device + ", " + info.description;
  switch (info.state) {
    case PortState::Usable:
      break;
    case PortState::NoPermission:
      if (info.group.empty()) {
        return named + "\nPermission denied: ask the administrator for read and write access.";
      }
      return named + "\nPermission denied: the device belongs to the group " + info.group +
             ".\nRun as administrator: usermod -aG " + info.group + " USER, then log in again.";
    case PortState::Absent:
      return device +
             " is not present. Connect the adapter,\nor set the device in corvex.ini, section [devices], key "
             "com" +
             std::to_string(number) + '.' + PresentPorts(ports, settings);
  }
  return named;
}

}  // namespace corvex
