#pragma once

#include "platform/Services.h"

namespace corvex {

/// The system's alert sound, whatever the pitch and the length: Qt's base has no tone generator.
class QtSound : public Sound {
 public:
  void Beep(double hertz, int milliseconds) override;
};

}  // namespace corvex
