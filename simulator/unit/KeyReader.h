#pragma once

#include <functional>

#include "unit/Timer.h"

namespace corvex::simulation {

enum class KeyKind {
  Character,  ///< a printable character or a backspace
  Enter,
  Escape,
  Up,
  Down,
  Soft,     ///< soft key 1 to 5, stored in `value`
  Repaint,  ///< not a key of the user: the PC requests the current screen again
  TraceOn,
  TraceOff,
  TraceFlush,
  ChannelTraceOn,
  ChannelTraceOff,
};

struct Key {
  KeyKind kind = KeyKind::Character;
  int value = 0;  ///< the character or the number of the soft key
};

/// Converts the bytes from the PC to keys.
///
/// The clear key is a single ESC; the cursor keys start with ESC too. The bytes of a cursor key arrive
/// together, so an ESC that is not continued within kEscapeWait is the clear key.
class KeyReader {
 public:
  static constexpr EventLoop::Time kEscapeWait = std::chrono::milliseconds(50);

  KeyReader(EventLoop& loop, std::function<void(Key)> onKey) : wait_(loop), onKey_(std::move(onKey)) {}

  void Take(char c);
  /// Drops an incomplete sequence.
  void Clear();

 private:
  enum class Sequence { None, Escape, Bracket };

  void TakePlain(char c);
  /// Processes the held bytes, which turned out not to be a cursor key.
  void Release();

  Sequence sequence_ = Sequence::None;
  Timer wait_;
  std::function<void(Key)> onKey_;
};

}  // namespace corvex::simulation
