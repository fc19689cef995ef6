#pragma once

#include <string>
#include <string_view>

#include "session/ReceiveBuffer.h"
#include "session/SessionState.h"
#include "session/StreamScanner.h"
#include "session/TextGrid.h"
#include "session/modTML.h"
#include "support/VirtualLoop.h"

namespace corvex::test {

/// The decoders of the modem's stream wired up as in the program, with a calendar in which each month has 31
/// days and a long date reads "31/3/2006".
struct Decoder {
  VirtualLoop loop;
  ReceiveBuffer received{loop};
  SessionState state;
  TextGrid grid{state};
  TagStream tags{state, grid, LongDate};
  StreamScanner scanner{received, state, tags, grid};

  /// One receive event.
  void Feed(std::string_view bytes) {
    received.AppendRxBytes(bytes);
    scanner.ScanStream();
  }

  static std::string LongDate(int year, int month, int day) {
    if (month < 1 || month > 12 || day < 1 || day > 31) return {};
    return std::to_string(day) + '/' + std::to_string(month) + '/' + std::to_string(year);
  }
};

}  // namespace corvex::test
