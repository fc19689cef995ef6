#pragma once

#include <functional>

#include "unit/Timer.h"

namespace corvex::simulation {

enum class KeyKind {
  Character,  ///< a printable character, or a backspace
  Enter,
  Escape,
  Up,
  Down,
  Soft,     ///< soft key 1 to 5 in `value`
  Repaint,  ///< not a key of the user: the PC wants the present screen anew
  TraceOn,
  TraceOff,
  TraceFlush,
  ChannelTraceOn,
  ChannelTraceOff,
};

struct Key {
  KeyKind kind = KeyKind::Character;
  int value = 0;  ///< the character, or the number of the soft key
};

/// Turns the bytes of the PC into keys.
///
/// The clear key is a bare ESC, and the cursor keys begin with ESC too. They differ by what follows: a cursor
/// key comes in one go, so an ESC with nothing behind it for a short while was the clear key.
class KeyReader {
 public:
  static constexpr EventLoop::Time kEscapeWait = std::chrono::milliseconds(50);

  KeyReader(EventLoop& loop, std::function<void(Key)> onKey) : wait_(loop), onKey_(std::move(onKey)) {}

  void Take(char c);
  /// Forgets the beginning of a sequence.
  void Clear();

 private:
  enum class Sequence { None, Escape, Bracket };

  void TakePlain(char c);
  /// What was held back turns out to be no cursor key.
  void Release();

  Sequence sequence_ = Sequence::None;
  Timer wait_;
  std::function<void(Key)> onKey_;
};

}  // namespace corvex::simulation
