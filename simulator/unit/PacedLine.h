#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "unit/Timer.h"

namespace corvex::simulation {

/// Delays bytes to the speed of a serial line, at ten bits per byte.
class PacedLine {
 public:
  /// The maximum number of waiting bytes. A text that does not fit is dropped completely.
  static constexpr std::size_t kLimit = std::size_t{64} * 1024;

  /// `bitsPerSecond` 0 means no delay.
  PacedLine(EventLoop& loop, int bitsPerSecond, std::function<void(std::string_view)> send)
      : loop_(loop), bitsPerSecond_(bitsPerSecond), send_(std::move(send)), timer_(loop) {}

  void Send(std::string_view bytes);
  /// Drops the waiting bytes.
  void Reset();

 private:
  void Schedule();

  EventLoop& loop_;
  int bitsPerSecond_;
  std::function<void(std::string_view)> send_;
  std::string waiting_;
  EventLoop::Time free_{0};  // when the line will have sent all bytes scheduled so far
  Timer timer_;
};

}  // namespace corvex::simulation
