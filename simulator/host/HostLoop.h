#pragma once

#include <functional>
#include <map>

#include "host/System.h"
#include "platform/EventLoop.h"

namespace corvex::simulation::host {

/// The event loop of a program without windows: sleeps in the system's wait for handles until one of them is
/// ready or a timer is due.
class HostLoop : public EventLoop {
 public:
  Time Now() const override;
  double SecondsSinceMidnight() const override;
  std::int64_t LocalSeconds() const override;

  /// Calls `onReady` whenever the handle can be read, and while `write` is set whenever it can be written.
  void Watch(Handle handle, bool write, std::function<void()> onReady);
  void Unwatch(Handle handle);

  /// Runs until the program is to end.
  void Run();

 protected:
  void Sleep(Time until) override;
  void Poll() override;
  void WakeAt(Time) override {}
  void WakeFromAnyThread() override {}  // this program has one thread

 private:
  struct Watched {
    bool write = false;
    std::function<void()> onReady;
  };
  void WaitAndServe(Time time);

  std::map<Handle, Watched> watched_;
};

}  // namespace corvex::simulation::host
