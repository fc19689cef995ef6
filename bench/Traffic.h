#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "support/Decoder.h"

namespace corvex::bench {

/// Returns traffic as a modem sends it: painted screens, status packets, lists, soft keys, print lines and
/// trace records, in a fixed mixture.
std::string MixedTraffic(std::size_t bytes);

/// Returns a pattern repeated up to `bytes` bytes.
std::string Repeated(std::string_view pattern, std::size_t bytes);

/// Feeds the traffic as receive events of `pieceSize` bytes and clears the change flags after each.
void FeedInPieces(test::Decoder& decoder, std::string_view traffic, std::size_t pieceSize);

}  // namespace corvex::bench
