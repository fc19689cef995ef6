#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "unit/Timer.h"
#include "unit/WireLog.h"

namespace corvex::simulation {

/// Plays the modem's side of a recorded session.
///
/// It waits for what the PC is recorded to send and answers at the recorded distances. A PC that sends
/// something else is waited for in vain for a few seconds; then the record goes on. When the line goes down
/// the record goes on at its next opening, or with the next connection from its beginning.
class Playback {
 public:
  /// How much longer than in the record the PC may take.
  static constexpr EventLoop::Time kPatience = std::chrono::seconds(5);
  /// What is kept of bytes that the record does not have.
  static constexpr std::size_t kLimit = std::size_t{64} * 1024;

  Playback(EventLoop& loop, std::vector<WireEvent> events, std::function<void(std::string_view)> send,
           std::function<void()> hangUp);

  void Receive(std::string_view bytes);
  void LineUp();
  void LineDown();

 private:
  /// Goes as far as it can without waiting.
  void Proceed();
  bool TryStep(const WireEvent& event);
  /// Comes back to Proceed at that time; always false.
  bool WaitUntil(EventLoop::Time time);
  bool TakeExpected(std::string_view bytes);
  void StepDone();
  /// When the next event was recorded, counted from when the one before it has happened.
  EventLoop::Time Recorded() const;

  EventLoop& loop_;
  std::vector<WireEvent> events_;
  std::function<void(std::string_view)> send_;
  std::function<void()> hangUp_;
  std::size_t next_ = 0;
  EventLoop::Time lastStep_{0};
  bool lineUp_ = false;
  std::string received_;
  Timer timer_;
};

}  // namespace corvex::simulation
