#pragma once

#include <functional>
#include <string_view>

#include "unit/Timer.h"

namespace corvex::simulation {

/// A demonstration without hands: from the idle screen it presses one key after the other, as the PC would
/// send them, and begins again when it is through.
class Tour {
 public:
  Tour(EventLoop& loop, std::function<void(std::string_view)> press)
      : press_(std::move(press)), timer_(loop) {}

  void Start();
  void Stop() { timer_.Stop(); }

 private:
  void Schedule();

  std::function<void(std::string_view)> press_;
  Timer timer_;
  std::size_t next_ = 0;
};

}  // namespace corvex::simulation
