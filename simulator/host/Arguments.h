#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "unit/ErbFront.h"
#include "unit/Faults.h"
#include "unit/ImageMaker.h"
#include "unit/Unit.h"

namespace corvex::simulation::host {

/// What the command line asks for.
struct Arguments {
  bool help = false;
  std::optional<std::uint16_t> tcpPort;
  bool anyAddress = false;
  bool pty = false;
  std::string link;
  int speed = 0;  ///< Bits per second, 0 for no limit.
  std::string playFile;
  std::string imageFile;  ///< Not empty: the program only writes an image to this file.
  ImageOptions image;
  UnitOptions unit;
  std::optional<ErbOptions> erb;  ///< Set: the connection goes through an ERB unit.
  Faults faults;
};

/// The text of --help.
extern const char* const kUsage;

/// Reads the words after the program's name. `error` must be empty, and receives a message if they are
/// invalid.
Arguments ParseArguments(const std::vector<std::string>& words, std::string& error);

}  // namespace corvex::simulation::host
