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

/// How a line misbehaves. The same seed and the same bytes give the same faults.
struct Faults {
  std::uint32_t seed = 1;
  double garble = 0;        ///< the share of bytes in which one bit is turned, 0 to 1
  double drop = 0;          ///< the share of bytes that get lost, 0 to 1
  EventLoop::Time late{0};  ///< how much later all bytes come
  bool cut = false;         ///< bytes come in pieces of 1 to 7, a little apart
  bool silent = false;      ///< nothing comes at all
  std::optional<std::uint64_t> hangUpAfter = std::nullopt;  ///< the line goes down after this many bytes
};

/// A line from a unit to its PC that does to the bytes what Faults says.
class FaultyLine {
 public:
  /// What waits on a late line at the most; more is lost, as on a line that nobody reads.
  static constexpr std::size_t kLimit = std::size_t{64} * 1024;

  FaultyLine(EventLoop& loop, Faults faults, std::function<void(std::string_view)> send,
             std::function<void()> hangUp);

  void Send(std::string_view bytes);
  /// From now on it misbehaves in another way, or not at all. What waits stays in its place.
  void SetFaults(Faults faults);
  /// A new connection: nothing waits any more, and the bytes to the hang-up count from 0. The faults go on in
  /// their sequence.
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
