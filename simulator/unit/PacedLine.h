#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "unit/Timer.h"

namespace corvex::simulation {

/// A serial line's speed: bytes go on no faster than their bits would, ten to the byte.
class PacedLine {
 public:
  /// What waits for the line at the most. A text that does not fit is lost as a whole.
  static constexpr std::size_t kLimit = std::size_t{64} * 1024;

  /// `bitsPerSecond` 0: everything goes on at once.
  PacedLine(EventLoop& loop, int bitsPerSecond, std::function<void(std::string_view)> send)
      : loop_(loop), bitsPerSecond_(bitsPerSecond), send_(std::move(send)), timer_(loop) {}

  void Send(std::string_view bytes);
  /// Forgets what waits.
  void Reset();

 private:
  void Schedule();

  EventLoop& loop_;
  int bitsPerSecond_;
  std::function<void(std::string_view)> send_;
  std::string waiting_;
  EventLoop::Time free_{0};  // when the line has sent what it was given so far
  Timer timer_;
};

}  // namespace corvex::simulation
