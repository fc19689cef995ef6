#include "desktop/Tone.h"

#if defined(_WIN32)

#include <windows.h>

namespace corvex {

void PlayTone(double hertz, int milliseconds) {
  Beep(static_cast<DWORD>(hertz), static_cast<DWORD>(milliseconds));
}

}  // namespace corvex

#elif defined(CORVEX_ALSA)

#include <alsa/asoundlib.h>

#include <QLibrary>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace corvex {

namespace {

constexpr int kRate = 48000;  // samples per second, one channel
constexpr double kLoudness = 0.3;
constexpr int kFade = kRate / 200;           // samples; fades both ends to avoid clicks
constexpr unsigned kBufferTime = 100'000;    // microseconds
constexpr unsigned kSoftwareResampling = 1;  // for devices without this rate

std::vector<std::int16_t> Sine(double hertz, int milliseconds) {
  const int count = kRate / 1000 * milliseconds;
  std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const double fade =
        std::min({1.0, static_cast<double>(i) / kFade, static_cast<double>(count - i) / kFade});
    const double value = std::sin(2 * std::numbers::pi * hertz * i / kRate);
    samples[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(INT16_MAX * kLoudness * fade * value);
  }
  return samples;
}

/// Discards ALSA's error messages. A missing device needs no message on the console.
void Ignore(const char*, int, const char*, int, const char*, ...) {}

/// The functions used from the ALSA library. The library is loaded when a tone is played, not when the
/// program starts: most sessions play no tone, and the program must also run on systems without ALSA.
class Alsa {
 public:
  bool Load() {
    return library_.load() && Find(open_, "snd_pcm_open") && Find(setParams_, "snd_pcm_set_params") &&
           Find(write_, "snd_pcm_writei") && Find(recover_, "snd_pcm_recover") &&
           Find(drain_, "snd_pcm_drain") && Find(close_, "snd_pcm_close") &&
           Find(setErrorHandler_, "snd_lib_error_set_handler");
  }

  void Play(const std::vector<std::int16_t>& samples) {
    setErrorHandler_(Ignore);
    snd_pcm_t* device = nullptr;
    if (open_(&device, "default", SND_PCM_STREAM_PLAYBACK, 0) < 0) return;
    if (setParams_(device, SND_PCM_FORMAT_S16, SND_PCM_ACCESS_RW_INTERLEAVED, 1, kRate, kSoftwareResampling,
                   kBufferTime) >= 0) {
      Write(device, samples);
      drain_(device);
    }
    close_(device);
  }

 private:
  void Write(snd_pcm_t* device, const std::vector<std::int16_t>& samples) {
    std::size_t done = 0;
    while (done < samples.size()) {
      const auto written = write_(device, samples.data() + done, samples.size() - done);
      if (written > 0) {
        done += static_cast<std::size_t>(written);
      } else if (recover_(device, static_cast<int>(written), 1) < 0 || written == 0) {
        return;
      }
    }
  }

  template <typename Function>
  bool Find(Function*& function, const char* name) {
    function = reinterpret_cast<Function*>(library_.resolve(name));
    return function != nullptr;
  }

  QLibrary library_{QStringLiteral("asound"), 2};
  decltype(snd_pcm_open)* open_ = nullptr;
  decltype(snd_pcm_set_params)* setParams_ = nullptr;
  decltype(snd_pcm_writei)* write_ = nullptr;
  decltype(snd_pcm_recover)* recover_ = nullptr;
  decltype(snd_pcm_drain)* drain_ = nullptr;
  decltype(snd_pcm_close)* close_ = nullptr;
  decltype(snd_lib_error_set_handler)* setErrorHandler_ = nullptr;
};

}  // namespace

void PlayTone(double hertz, int milliseconds) {
  Alsa alsa;
  if (alsa.Load()) alsa.Play(Sine(hertz, milliseconds));
}

}  // namespace corvex

#else

namespace corvex {

void PlayTone(double, int) {}  // built without a sound library

}  // namespace corvex

#endif
