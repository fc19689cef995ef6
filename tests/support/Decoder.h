#pragma once

#include <string>
#include <string_view>

#include "session/ReceiveBuffer.h"
#include "session/SessionState.h"
#include "session/StreamScanner.h"
#include "session/TextGrid.h"
#include "session/modTML.h"
#include "support/FakePlatform.h"

namespace corvex::test {

/// The decoders of the modem's stream wired up as in the program.
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
