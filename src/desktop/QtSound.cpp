#include "desktop/QtSound.h"

#include <QApplication>
#include <algorithm>
#include <system_error>
#include <thread>

#include "desktop/Tone.h"

namespace corvex {

namespace {

// Range that a small loudspeaker can play and an ear can hear, in hertz.
constexpr double kLowest = 40;
constexpr double kHighest = 16'000;
constexpr int kLongest = 2000;  // milliseconds

}  // namespace

void QtSound::Beep(double hertz, int milliseconds) {
  if (!(hertz >= kLowest && hertz <= kHighest) || milliseconds <= 0) return;  // also rejects NaN
  if (playing_->exchange(true)) return;
  try {
    std::thread([playing = playing_, hertz, time = std::min(milliseconds, kLongest)] {
      PlayTone(hertz, time);
      *playing = false;
    }).detach();
  } catch (const std::system_error&) {
    *playing_ = false;  // no thread available: skip the tone
  }
}

void QtSound::Bell() {
  QApplication::beep();
}

}  // namespace corvex
