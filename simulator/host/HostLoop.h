#pragma once

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>

#include "platform/EventLoop.h"

namespace corvex::simulation::host {

/// The event loop of a program without windows, on Asio's: sleeps in it until something has come or a timer
/// is due. An interrupt from the keyboard and a polite request to end from the system end it.
class HostLoop : public EventLoop {
 public:
  HostLoop();

  /// For ports, whose handlers run within the waits of this loop and on its thread.
  asio::io_context& Io() { return io_; }

  Time Now() const override;
  double SecondsSinceMidnight() const override;
  std::int64_t LocalSeconds() const override;

  /// Runs until the program is to end.
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
