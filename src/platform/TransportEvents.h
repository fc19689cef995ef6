#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/EventLoop.h"

namespace corvex {

/// Hands a transport's signals over as posted tasks of the event loop, so that a handler that waits holds
/// nothing back. A task belongs to the connection it was posted in: once that is over it is not delivered any
/// more.
class TransportEvents {
 public:
  explicit TransportEvents(EventLoop& loop) : loop_(loop) {}

  /// Ends the connection for all events posted so far.
  void Cut() { connection_ = std::make_shared<Connection>(); }

  /// Says whether the connection that is there now still is, on the loop's thread alone.
  std::function<bool()> Guard() const {
    return [alive = std::weak_ptr(connection_)] { return !alive.expired(); };
  }

  void Post(EventLoop::Task task) { loop_.Post(Guarded(std::move(task))); }

  /// Posts `announce` for bytes that wait, once for however many come before it runs. A transport whose
  /// buffer is full signals no more, so while `stillFull` says so afterwards it is announced again from time
  /// to time.
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
