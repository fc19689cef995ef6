#pragma once

#include <functional>
#include <string_view>

#include "unit/Timer.h"

namespace corvex::simulation {

/// An automatic demonstration. Starting at the idle screen, it sends one key after the other, as the PC
/// would, and repeats the sequence when it is finished.
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
