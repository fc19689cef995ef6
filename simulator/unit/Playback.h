#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "unit/Timer.h"
#include "unit/WireLog.h"

namespace corvex::simulation {

/// Plays back the modem's side of a recorded session.
///
/// Before each answer it waits for the bytes that the PC sent in the recording, and keeps the recorded
/// delays. If the PC sends something else, playback continues after kPatience. When the line goes down,
/// playback skips to the next connection in the recording. If there is none, the next connection starts the
/// recording again.
class Playback {
 public:
  /// How long the PC may take in addition to the recorded time.
  static constexpr EventLoop::Time kPatience = std::chrono::seconds(5);
  /// Maximum number of bytes that are kept while waiting for the expected ones.
  static constexpr std::size_t kLimit = std::size_t{64} * 1024;

  Playback(EventLoop& loop, std::vector<WireEvent> events, std::function<void(std::string_view)> send,
           std::function<void()> hangUp);

  void Receive(std::string_view bytes);
  void LineUp();
  void LineDown();

 private:
  /// Plays events until one has to wait.
  void Proceed();
  bool TryStep(const WireEvent& event);
  /// Calls Proceed at the given time. Always returns false.
  bool WaitUntil(EventLoop::Time time);
  bool TakeExpected(std::string_view bytes);
  void StepDone();
  /// Returns the recorded time between the previous event and the next one.
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
