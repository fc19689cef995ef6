#pragma once

#include <string>

#include "platform/Transports.h"

namespace corvex {

/// The serial devices of this computer, taken from the kernel's list of terminals on Linux and from the
/// registry on Windows. Both calls take about a millisecond.
class SystemSerialPorts : public SerialPorts {
 public:
  /// `list` is the folder with the kernel's list. It is not used on Windows.
  explicit SystemSerialPorts(std::string list = "/sys/class/tty") : list_(std::move(list)) {}

  std::vector<std::string> Devices() const override;
  PortInfo Probe(const std::string& device) const override;

 private:
  std::string list_;
};

}  // namespace corvex
