#pragma once

#include <string>
#include <string_view>

#include "state/ReceiveBuffer.h"
#include "state/SessionState.h"
#include "stream/StreamScanner.h"
#include "stream/TextGrid.h"
#include "stream/modTML.h"
#include "support/FakePlatform.h"

namespace corvex::test {

/// The decoders of the modem's stream, connected as in the program.
struct Decoder {
  VirtualLoop loop;
  ReceiveBuffer received{loop};
  SessionState state;
  TextGrid grid{state};
  TagStream tags{state, grid, FakePlatform::LongDate};
  StreamScanner scanner{received, state, tags, grid};

  /// One receive event.
  void Feed(std::string_view bytes) {
    received.AppendRxBytes(bytes);
    scanner.ScanStream();
  }
};

}  // namespace corvex::test
