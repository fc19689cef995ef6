#pragma once

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>

#include "platform/EventLoop.h"

namespace corvex::simulation::host {

/// The event loop of a program without windows, built on Asio. It sleeps in Asio's loop until an event
/// arrives or a timer is due. An interrupt from the keyboard or a termination signal ends it.
class HostLoop : public EventLoop {
 public:
  HostLoop();

  /// The Asio context for the ports. Their handlers run on this loop's thread, while it waits.
  asio::io_context& Io() { return io_; }

  Time Now() const override;
  double SecondsSinceMidnight() const override;
  std::int64_t LocalSeconds() const override;

  /// Runs until the program ends.
  void Run();

 protected:
  void Sleep(Time until) override;
  void Poll() override;
  void WakeAt(Time) override {}
  void WakeFromAnyThread() override;

 private:
  asio::io_context io_{1};
  asio::executor_work_guard<asio::io_context::executor_type> work_{io_.get_executor()};
  asio::signal_set signals_{io_};
};

}  // namespace corvex::simulation::host
