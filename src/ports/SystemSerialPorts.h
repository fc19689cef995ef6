#pragma once

#include <string>

#include "platform/Transports.h"

namespace corvex {

/// The serial devices of this computer. On Linux they are looked up in the kernel's own list of terminals, on
/// Windows in the registry's; both take about a millisecond.
class SystemSerialPorts : public SerialPorts {
 public:
  /// `list`: where the kernel has its list; of no use on Windows.
  explicit SystemSerialPorts(std::string list = "/sys/class/tty") : list_(std::move(list)) {}

  std::vector<std::string> Devices() const override;
  PortInfo Probe(const std::string& device) const override;

 private:
  std::string list_;
};

}  // namespace corvex
