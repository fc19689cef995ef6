#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "support/Decoder.h"

namespace corvex::bench {

/// Returns `bytes` bytes of traffic as a modem sends it: painted screens, status packets, lists, soft keys,
/// print lines and trace records. The mixture is the same on every call.
std::string MixedTraffic(std::size_t bytes);

/// Repeats a pattern and cuts the result to `bytes` bytes.
std::string Repeated(std::string_view pattern, std::size_t bytes);

/// Feeds the traffic as receive events of `pieceSize` bytes. Clears the change flags after each event.
void FeedInPieces(test::Decoder& decoder, std::string_view traffic, std::size_t pieceSize);

}  // namespace corvex::bench
