#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "support/Decoder.h"

namespace corvex::bench {

/// Traffic as a modem makes it: painted screens, status packets, lists, soft keys, print lines and trace
/// records, in a fixed mixture.
std::string MixedTraffic(std::size_t bytes);

/// A pattern over and over.
std::string Repeated(std::string_view pattern, std::size_t bytes);

/// Receive events of `pieceSize` bytes, with the flags served after each.
void FeedInPieces(test::Decoder& decoder, std::string_view traffic, std::size_t pieceSize);

}  // namespace corvex::bench
