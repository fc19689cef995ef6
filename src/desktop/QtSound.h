#pragma once

#include <atomic>
#include <memory>

#include "platform/Services.h"

namespace corvex {

/// Tones on the system's sound device. Each plays on a thread of its own, which touches nothing of the
/// program; one that is asked for while another is still under way, or its device opening, is left out. What
/// cannot be heard is left out too.
class QtSound : public Sound {
 public:
  void Beep(double hertz, int milliseconds) override;
  void Bell() override;

 private:
  const std::shared_ptr<std::atomic<bool>> playing_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace corvex
