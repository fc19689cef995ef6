#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/EventLoop.h"

namespace corvex {

/// Delivers a transport's events as posted tasks of the event loop, so that a handler that waits does not
/// hold up later events. Each task belongs to the connection in which it was posted. It is dropped if that
/// connection has ended before the task runs.
class TransportEvents {
 public:
  explicit TransportEvents(EventLoop& loop) : loop_(loop) {}

  /// Ends the current connection and drops all events that are still queued.
  void Cut() { connection_ = std::make_shared<Connection>(); }

  /// Returns a function that reports whether the connection that is current now still exists. Guard and the
  /// returned function must be called on the loop's thread.
  std::function<bool()> Guard() const {
    return [alive = std::weak_ptr(connection_)] { return !alive.expired(); };
  }

  /// Posts a task that runs only if the connection still exists.
  void Post(EventLoop::Task task) { loop_.Post(Guarded(std::move(task))); }

  /// Posts `announce` to report that received bytes are waiting. Further calls before `announce` runs have no
  /// effect. A transport whose buffer is full signals no new bytes, so `announce` is repeated every 50 ms
  /// while `stillFull` returns true.
  void PostArrival(EventLoop::Task announce, std::function<bool()> stillFull) {
    if (connection_->arrivalPosted) return;
    connection_->arrivalPosted = true;
    Post(Arrival(std::move(announce), std::move(stillFull)));
  }

 private:
  struct Connection {
    bool arrivalPosted = false;
  };

  static constexpr EventLoop::Time kAnnounceAgain = std::chrono::milliseconds(50);

  EventLoop::Task Guarded(EventLoop::Task task) const {
    return [alive = std::weak_ptr(connection_), task = std::move(task)] {
      if (!alive.expired()) task();
    };
  }

  EventLoop::Task Arrival(EventLoop::Task announce, std::function<bool()> stillFull) {
    return [this, announce = std::move(announce), stillFull = std::move(stillFull)] {
      const std::weak_ptr connection = connection_;
      connection_->arrivalPosted = false;
      announce();
      const auto now = connection.lock();
      if (now == nullptr || now->arrivalPosted || !stillFull()) return;
      now->arrivalPosted = true;
      loop_.After(kAnnounceAgain, Guarded(Arrival(announce, stillFull)));
    };
  }

  EventLoop& loop_;
  std::shared_ptr<Connection> connection_ = std::make_shared<Connection>();
};

}  // namespace corvex
