#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "unit/Timer.h"

namespace corvex::simulation {

/// The faults of a line. The same seed and the same bytes produce the same faults.
struct Faults {
  std::uint32_t seed = 1;
  double garble = 0;        ///< share of bytes in which one bit is flipped, 0 to 1
  double drop = 0;          ///< share of bytes that are lost, 0 to 1
  EventLoop::Time late{0};  ///< delay of all bytes
  bool cut = false;         ///< bytes arrive in pieces of 1 to 7 bytes, 1 ms apart
  bool silent = false;      ///< nothing arrives at all
  std::optional<std::uint64_t> hangUpAfter = std::nullopt;  ///< the line hangs up after this many bytes
};

/// The line from a unit to the PC. Applies the faults to the bytes that pass.
class FaultyLine {
 public:
  /// Maximum number of bytes that can wait on a delayed line. If a call of Send exceeds it, the bytes of that
  /// call are lost.
  static constexpr std::size_t kLimit = std::size_t{64} * 1024;

  FaultyLine(EventLoop& loop, Faults faults, std::function<void(std::string_view)> send,
             std::function<void()> hangUp);

  void Send(std::string_view bytes);
  /// Changes the faults from now on. Bytes that are already waiting keep their order and delay.
  void SetFaults(Faults faults);
  /// Resets the line for a new connection: drops the waiting bytes and restarts the count for `hangUpAfter`.
  /// The sequence of random faults continues.
  void Reset();

 private:
  struct Piece {
    EventLoop::Time due{0};
    std::string bytes;
  };

  bool Happens(double share);
  void Queue(std::string_view bytes);
  void SendDue();
  void Deliver(std::string_view bytes);

  EventLoop& loop_;
  Faults faults_;
  std::function<void(std::string_view)> send_;
  std::function<void()> hangUp_;
  std::mt19937 random_;
  std::deque<Piece> pieces_;
  std::size_t waiting_ = 0;
  EventLoop::Time lastDue_{0};
  std::uint64_t delivered_ = 0;
  bool hungUp_ = false;
  Timer timer_;
};

}  // namespace corvex::simulation
