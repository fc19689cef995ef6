#pragma once

#include <QString>

#include "platform/Transports.h"

namespace corvex {

/// The serial devices of this computer. On Linux they are looked up in the kernel's own list of terminals, in
/// about a millisecond; Qt's enumeration, used elsewhere, walks all devices of the system and takes
/// some 40.
class QtSerialPorts : public SerialPorts {
 public:
  /// `list`: where the kernel has its list.
  explicit QtSerialPorts(QString list = QStringLiteral("/sys/class/tty")) : list_(std::move(list)) {}

  std::vector<std::string> Devices() const override;
  PortInfo Probe(const std::string& device) const override;

 private:
  QString list_;
};

}  // namespace corvex
