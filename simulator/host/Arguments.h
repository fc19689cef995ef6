#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "unit/ErbFront.h"
#include "unit/Faults.h"
#include "unit/Unit.h"

namespace corvex::simulation::host {

/// What the command line asks for.
struct Arguments {
  bool help = false;
  std::optional<std::uint16_t> tcpPort;
  bool anyAddress = false;
  bool pty = false;
  std::string link;
  int speed = 0;  ///< bits per second, 0 for no limit
  std::string playFile;
  UnitOptions unit;
  std::optional<ErbOptions> erb;  ///< the unit stands behind an ERB unit
  Faults faults;
};

/// The text of --help.
extern const char* const kUsage;

/// What is wrong stands in `error`; it is empty if nothing is.
Arguments ParseArguments(const std::vector<std::string>& words, std::string& error);

}  // namespace corvex::simulation::host
