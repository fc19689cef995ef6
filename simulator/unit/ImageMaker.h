#pragma once

#include <cstdint>
#include <string>

namespace corvex::simulation {

/// What an image for the simulated unit consists of.
struct ImageOptions {
  int segments = 4;               ///< 0 to 255; the kinds and the memory types take turns
  std::uint32_t bytes = 400'000;  ///< data bytes of all segments together
  int blockSize = 25'600;         ///< data bytes of a block, at most; even
  int version = 400;              ///< a hundred times the version
  std::uint32_t seed = 1;         ///< of the data
};

/// Returns an image file that the simulated unit accepts: a catalogue, the data blocks of all segments, and
/// an end block.
std::string MakeImage(const ImageOptions& options);

}  // namespace corvex::simulation
