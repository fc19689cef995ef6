#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "session/ReceiveBuffer.h"
#include "session/SessionState.h"
#include "session/TextGrid.h"
#include "session/modTML.h"

namespace corvex {

enum class ScanKind : std::int32_t { None = 0, TraceItem = 1, TagItem = 2, EscapeItem = 3 };

/// The next item in a text. Positions count from 1.
struct ScanItem {
  ScanKind kind = ScanKind::None;
  std::int16_t pos = 5000;        ///< Its first character; an escape or trace record is only seen before 5000
                                  ///< unless a tag stands behind it.
  std::int16_t after = 0;         ///< The first character behind its introducer.
  std::int16_t traceLength = 0;   ///< Trace records only.
};

ScanItem FindNextItem(std::string_view text);

/// Takes the modem's stream apart: tag packets, escape sequences with plain text between them, and trace
/// records, cut in pieces anywhere.
class StreamScanner {
 public:
  enum class ScanState : std::int32_t { Idle = 0, Trace = 1, Tag = 2, Escape = 3 };

  StreamScanner(ReceiveBuffer& received, const SessionState& state, TagStream& tags, TextGrid& grid);

  /// Takes what has been received and hands on every item that is complete. A call from within one of the
  /// decoders returns at once; its bytes are taken by the next call.
  void ScanStream();

  ScanState scanState() const { return scanState_; }

  /// Takes the text of trace records while the master trace window is open.
  std::function<void(std::string_view)> masterTrace;

 private:
  ReceiveBuffer& received_;
  const SessionState& state_;
  TagStream& tags_;
  TextGrid& grid_;
  ScanState scanState_ = ScanState::Idle;
};

}  // namespace corvex
