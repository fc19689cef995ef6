#include "stream/StreamScanner.h"

#include "base/ScopedFlag.h"

namespace corvex {

/// Marks the scanner as busy for one scan. The destructor removes what was consumed, even after an exception.
class StreamScanner::Turn {
 public:
  explicit Turn(StreamScanner& scanner) : scanner_(scanner), busy_(scanner.scanBusy_) {}
  ~Turn() { scanner_.DropTaken(); }

 private:
  StreamScanner& scanner_;
  const ScopedFlag busy_;
};

StreamScanner::StreamScanner(ReceiveBuffer& received, const SessionState& state, TagStream& tags,
                             TextGrid& grid)
    : received_(received), state_(state), tags_(tags), grid_(grid) {}

void StreamScanner::ScanStream() {
  if (scanBusy_) return;
  const Turn turn(*this);
  received_.TakeRxInto(pending_);
  while (TakeStep()) {
  }
}

bool StreamScanner::TakeStep() {
  if (scanState_ == ScanState::Idle && !TakeIdle()) return false;
  switch (scanState_) {
    case ScanState::Idle:
      return true;
    case ScanState::Trace:
      return TakeTrace();
    case ScanState::Tag:
      return TakeTag();
    case ScanState::Escape:
      return TakeEscape();
  }
  return false;
}

bool StreamScanner::TakeIdle() {
  const std::string_view text = Rest();
  if (text.empty()) return false;
  const ScanItem item = items_.Next(pending_, cursor_);
  if (item.kind == ScanKind::None) {
    // A tag that begins at kLastPosition can only be found once its introducer is complete.
    if (text.size() < kLastPosition - 1 + kPacketStart.size()) return false;
    cursor_ += kLastPosition;
    return true;
  }
  const bool shown = !afterTrace_;
  afterTrace_ = item.kind == ScanKind::TraceItem;
  traceLength_ = item.traceLength;
  scanState_ = static_cast<ScanState>(item.kind);
  // A tag packet is passed on with its introducer, other items without it.
  cursor_ += static_cast<std::size_t>(item.kind == ScanKind::TagItem ? item.pos : item.after) - 1;
  if (shown && item.pos > 1) grid_.WriteScreenText(text.substr(0, static_cast<std::size_t>(item.pos) - 1));
  return true;
}

bool StreamScanner::TakeTag() {
  const std::string_view text = Rest();
  const std::size_t end = packetEnd_.Find(pending_, cursor_, cursor_ + kLastPosition - kPacketEnd.size() + 1);
  if (end == WordSearch::npos) {
    if (text.size() < kLastPosition) return false;
    cursor_ += kLastPosition;
    scanState_ = ScanState::Idle;
    return true;
  }
  const std::string_view packet = text.substr(0, end - cursor_ + kPacketEnd.size());
  cursor_ += packet.size();
  scanState_ = ScanState::Idle;
  tags_.HandleTagPacket(packet);
  return true;
}

bool StreamScanner::TakeEscape() {
  const std::int16_t taken = grid_.MatchEscape(Rest());
  if (taken < 1) return false;
  cursor_ += static_cast<std::size_t>(taken);
  scanState_ = ScanState::Idle;
  return true;
}

bool StreamScanner::TakeTrace() {
  // The length counts every character of the record except the first. The last two are a line end and are
  // not passed on.
  const auto length = static_cast<std::size_t>(traceLength_);
  const std::string_view text = Rest();
  if (text.size() <= length) return false;
  cursor_ += length + 1;
  scanState_ = ScanState::Idle;
  if (state_.traceEnabled && masterTrace) masterTrace(text.substr(0, length - 1));
  return true;
}

void StreamScanner::DropTaken() {
  // erase() moves the remaining text to the front. Wait until enough has been consumed to justify that.
  constexpr std::size_t kWorthWhile = 4096;
  if (cursor_ < kWorthWhile && cursor_ < pending_.size()) return;
  pending_.erase(0, cursor_);
  items_.Shift(cursor_);
  packetEnd_.Shift(cursor_);
  cursor_ = 0;
}

}  // namespace corvex
