#include "unit/Tour.h"

#include <array>

namespace corvex::simulation {
namespace {

struct TourStep {
  int milliseconds;  ///< delay before the key, while the previous screen is shown
  std::string_view bytes;
};

constexpr std::string_view kEscape = "\x1b";
constexpr std::string_view kDown = "\x1b[B";
constexpr std::string_view kEnter = "\r";

constexpr std::array<TourStep, 17> kSteps{{
    {3000, kEnter},   // main menu
    {3000, "4"},      // Setup
    {2500, "1"},      // Language
    {1500, kDown},    //
    {1500, kEnter},   // the message, which disappears by itself
    {4500, "2"},      // Display
    {2000, kEscape},  // Setup
    {1500, kEscape},  // main menu
    {2000, "1"},      // Phone book
    {2000, "1"},      // Names
    {2500, kDown},    //
    {1000, kDown},    //
    {1000, kEnter},   // one entry
    {3000, kEscape},  // Names
    {1000, kEscape},  // Phone book
    {1000, kEscape},  // main menu
    {1000, kEscape},  // idle
}};

}  // namespace

void Tour::Start() {
  next_ = 0;
  Schedule();
}

void Tour::Schedule() {
  timer_.Start(std::chrono::milliseconds(kSteps[next_].milliseconds), [this] {
    const std::string_view bytes = kSteps[next_].bytes;
    next_ = (next_ + 1) % kSteps.size();
    Schedule();
    press_(bytes);
  });
}

}  // namespace corvex::simulation
