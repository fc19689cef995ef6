#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "state/ReceiveBuffer.h"
#include "state/SessionState.h"
#include "stream/ItemSearch.h"
#include "stream/TextGrid.h"
#include "stream/modTML.h"

namespace corvex {

/// Splits the modem's stream into tag packets, escape sequences, trace records and plain text. The stream may
/// arrive in pieces, cut at any place.
///
/// An item is a packet, an escape sequence or a trace record. Plain text is held until an item follows. Plain
/// text between a trace record and the next item is discarded.
///
/// There is no timeout for an incomplete item, but the amount of held text is bounded. Text without an item,
/// or a packet without an end, is discarded in parts of kLastPosition characters. Between events the scanner
/// therefore never holds more than kLastPosition characters plus an introducer.
class StreamScanner {
 public:
  /// The item that is being read. The values are those of ScanKind.
  enum class ScanState : std::int32_t { Idle = 0, Trace = 1, Tag = 2, Escape = 3 };

  StreamScanner(ReceiveBuffer& received, const SessionState& state, TagStream& tags, TextGrid& grid);

  /// Takes all received bytes and passes each complete item to its decoder. If a decoder calls this function,
  /// the call returns immediately. An item is consumed before its decoder is called: if the decoder throws,
  /// the next call continues after the item.
  void ScanStream();

  ScanState scanState() const { return scanState_; }

  /// Returns the number of characters that wait for the rest of their item.
  std::size_t held() const { return pending_.size() - cursor_; }

  /// Called with the text of each trace record while the master trace window is open.
  std::function<void(std::string_view)> masterTrace;

 private:
  class Turn;

  // Each function returns false if it needs more text. TakeStep reads plain text and the item after it.
  // TakeIdle reads the plain text and the introducer of the item. The other functions read the rest of the
  // item, one function for each kind.
  bool TakeStep();
  bool TakeIdle();
  bool TakeTrace();
  bool TakeTag();
  bool TakeEscape();

  std::string_view Rest() const { return std::string_view(pending_).substr(cursor_); }
  void DropTaken();

  ReceiveBuffer& received_;
  const SessionState& state_;
  TagStream& tags_;
  TextGrid& grid_;

  ScanState scanState_ = ScanState::Idle;
  bool scanBusy_ = false;
  bool afterTrace_ = false;  ///< The last item was a trace record, so plain text is discarded.
  std::int16_t traceLength_ = 0;

  std::string pending_;     ///< The text being scanned.
  std::size_t cursor_ = 0;  ///< Number of characters at the start of `pending_` that are consumed.
  ItemSearch items_;
  WordSearch packetEnd_{kPacketEnd, 1};
};

}  // namespace corvex
