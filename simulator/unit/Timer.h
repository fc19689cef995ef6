#pragma once

#include <utility>

#include "platform/EventLoop.h"

namespace corvex::simulation {

/// A one-shot timer that is cancelled when it is destroyed.
class Timer {
 public:
  explicit Timer(EventLoop& loop) : loop_(loop) {}
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  ~Timer() { Stop(); }

  /// Starts the timer. Cancels a pending run.
  void Start(EventLoop::Time delay, EventLoop::Task task) {
    Stop();
    id_ = loop_.After(delay, [this, run = std::move(task)] {
      id_ = 0;
      run();
    });
  }
  void Stop() { loop_.Cancel(std::exchange(id_, 0)); }
  bool Running() const { return id_ != 0; }

 private:
  EventLoop& loop_;
  EventLoop::TimerId id_ = 0;
};

}  // namespace corvex::simulation
