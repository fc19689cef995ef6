#pragma once

namespace corvex {

/// Plays a sine tone on the system's sound device. Returns when the tone has ended, which can take long if
/// the device is slow to open. Does nothing if there is no sound device. May be called from any thread, but
/// only one call may run at a time.
void PlayTone(double hertz, int milliseconds);

}  // namespace corvex
