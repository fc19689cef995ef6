#pragma once

#include <atomic>
#include <memory>

#include "platform/Services.h"

namespace corvex {

/// Plays tones on the system's sound device. Each tone plays on its own thread, which accesses no data of the
/// program. A tone is skipped if it is inaudible, or if the previous tone is still playing or waiting for its
/// device.
class QtSound : public Sound {
 public:
  void Beep(double hertz, int milliseconds) override;
  void Bell() override;

 private:
  const std::shared_ptr<std::atomic<bool>> playing_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace corvex
