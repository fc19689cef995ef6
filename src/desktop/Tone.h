#pragma once

namespace corvex {

/// Plays a sine on the system's sound device and returns when it is over, which can take long where the
/// device is slow to open. Nothing is heard where there is none. It may be called from any thread, one call
/// at a time.
void PlayTone(double hertz, int milliseconds);

}  // namespace corvex
