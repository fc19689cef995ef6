// Decodes arbitrary bytes from the modem, in pieces whose length the first byte sets. The held bytes must
// stay bounded, and the length of the pieces must not change the result.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/Text.h"
#include "support/Decoder.h"

using namespace corvex;

static void Require(bool holds) {
  if (!holds) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t piece = 1u + data[0];
  bytes.remove_prefix(1);

  test::Decoder whole;
  whole.Feed(bytes);
  test::Decoder pieces;
  for (std::size_t at = 0; at < bytes.size(); at += piece) {
    pieces.Feed(bytes.substr(at, piece));
    Require(pieces.scanner.held() < kLastPosition + kPacketStart.size() - 1);
  }
  for (const std::string& row : pieces.state.screenRows)
    Require(row.size() >= 40 && row.size() <= kLastPosition);
  // If another item closely follows the start of a trace record, the record is recognised or not depending on
  // how many bytes have arrived. Inputs with such a start are not compared.
  if (FindNoCase(bytes, "<Trace>") == std::string_view::npos) Require(pieces.state == whole.state);
  return 0;
}
