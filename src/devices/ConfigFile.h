#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"

// Files with a configuration of the terminal: one entry in its wire form a line, each line ended by CR LF.
// Paths use the system's narrow file name encoding.

namespace corvex {

/// A larger file is not read, in bytes.
inline constexpr std::size_t kMostConfigFile = std::size_t{16} << 20;

/// Returns the content of a file with these lines. A line end inside a line is left out, because it would
/// turn one entry into two.
std::string ConfigText(const std::vector<std::string>& lines);
/// Returns the lines of a file's content, without their line ends and otherwise as they are. A last line
/// without a line end counts too. Returns nullopt if the lines cannot be entries (see AddEntry).
std::optional<std::vector<std::string>> ConfigLines(std::string_view text);

/// Returns the lines of a file. Returns nullopt if the file does not exist, cannot be read, is too large, or
/// is not a configuration.
std::optional<std::vector<std::string>> ReadConfigFile(const std::string& path);

/// Replaces a file. Returns false on failure; an existing file then stays as it was.
bool WriteConfigFile(Files& files, const std::string& path, const std::vector<std::string>& lines);

/// The folder in which the program keeps backups of the terminal's configuration.
class ConfigBackups {
 public:
  static constexpr std::size_t kMost = 50;  ///< The oldest backups beyond this number are removed.

  ConfigBackups(Files& files, std::string folder) : files_(files), folder_(std::move(folder)) {}

  /// Saves a configuration under the terminal's name and the time, for example
  /// "Quil Heron 2006-03-31 142501.cfg". Creates the folder if necessary. Returns the path of the new file,
  /// or nullopt on failure. `localSeconds` is EventLoop::LocalSeconds.
  std::optional<std::string> Save(std::string_view terminal, std::int64_t localSeconds,
                                  const std::vector<std::string>& lines);

 private:
  void RemoveOldest(const std::string& kept) const;

  Files& files_;
  std::string folder_;
};

}  // namespace corvex
