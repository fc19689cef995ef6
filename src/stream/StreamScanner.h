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

/// Takes the modem's stream apart: tag packets, escape sequences with plain text between them, and trace
/// records, cut in pieces anywhere.
///
/// Plain text is held back until an item stands behind it, and thrown away if that follows a trace record. An
/// item whose end does not come is waited for without any limit of time; what is held is bounded all the
/// same, as positions are: text in which no item begins, and a packet that does not end, go once they fill
/// kLastPosition characters. So no more than these and the next introducer are ever held between events.
class StreamScanner {
 public:
  /// Within which item the stream stands: the numbers of its kind.
  enum class ScanState : std::int32_t { Idle = 0, Trace = 1, Tag = 2, Escape = 3 };

  StreamScanner(ReceiveBuffer& received, const SessionState& state, TagStream& tags, TextGrid& grid);

  /// Takes what has been received and hands on every item that is complete. A call from within one of the
  /// decoders returns at once; its bytes are taken by the next call. An item counts as taken before it is
  /// handed on, so that a decoder that throws leaves the scanner behind it.
  void ScanStream();

  ScanState scanState() const { return scanState_; }

  /// How many characters wait for the rest of their item.
  std::size_t held() const { return pending_.size() - cursor_; }

  /// Takes the text of trace records while the master trace window is open.
  std::function<void(std::string_view)> masterTrace;

 private:
  class Turn;

  // Each is false if it needs more text: an item with the text before it, the text before the next item and
  // its introducer, the rest of each kind of item.
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
  bool afterTrace_ = false;  ///< Plain text is thrown away: a trace record was the last item.
  std::int16_t traceLength_ = 0;

  std::string pending_;     ///< What is being taken apart, and
  std::size_t cursor_ = 0;  ///< how much of it has been.
  ItemSearch items_;
  WordSearch packetEnd_{kPacketEnd, 1};
};

}  // namespace corvex
