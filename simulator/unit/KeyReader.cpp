#include "unit/KeyReader.h"

#include <utility>

namespace corvex::simulation {
namespace {

constexpr char kEscape = 27;

}  // namespace

void KeyReader::Take(char c) {
  if (sequence_ == Sequence::Bracket && (c == 'A' || c == 'B')) {
    Clear();
    onKey_({c == 'A' ? KeyKind::Up : KeyKind::Down, 0});
    return;
  }
  if (sequence_ == Sequence::Escape && c == '[') {
    sequence_ = Sequence::Bracket;
    return;
  }
  Release();
  if (c == kEscape) {
    sequence_ = Sequence::Escape;
    wait_.Start(kEscapeWait, [this] { Release(); });
  } else {
    TakePlain(c);
  }
}

void KeyReader::Clear() {
  wait_.Stop();
  sequence_ = Sequence::None;
}

void KeyReader::Release() {
  const Sequence held = sequence_;
  Clear();
  if (held != Sequence::None) onKey_({KeyKind::Escape, 0});
  if (held == Sequence::Bracket) TakePlain('[');
}

void KeyReader::TakePlain(char c) {
  const auto byte = static_cast<unsigned char>(c);
  switch (byte) {
    case 13:
      return onKey_({KeyKind::Enter, 0});
    case 21:
      return onKey_({KeyKind::Soft, 1});
    case 9:
      return onKey_({KeyKind::Soft, 2});
    case 15:
      return onKey_({KeyKind::Soft, 3});
    case 16:
      return onKey_({KeyKind::Soft, 4});
    case 20:
      return onKey_({KeyKind::Soft, 5});
    case 18:
      return onKey_({KeyKind::Repaint, 0});
    case 3:
      return onKey_({KeyKind::TraceOn, 0});
    case 4:
      return onKey_({KeyKind::TraceOff, 0});
    case 5:
      return onKey_({KeyKind::TraceFlush, 0});
    case 129:
      return onKey_({KeyKind::ChannelTraceOn, 0});
    case 130:
      return onKey_({KeyKind::ChannelTraceOff, 0});
    default:
      if (byte == 8 || byte == 127 || byte >= ' ') onKey_({KeyKind::Character, byte});
  }
}

}  // namespace corvex::simulation
