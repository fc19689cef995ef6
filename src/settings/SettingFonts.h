#pragma once

#include <algorithm>

#include "platform/Geometry.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// The font in a section of the settings, either printer or screen. The size in the settings can be any
/// number. The size returned is 1 to 200 points: a size below 1 becomes 12, and a size above 200 becomes 200.
template <typename Section>
Font SettingFont(const Section& section) {
  constexpr std::int32_t kLeast = 1;
  constexpr std::int32_t kMost = 200;
  constexpr double kInstead = 12;  // Replaces an invalid size.
  const std::int32_t size = section.fontsize.Get();
  return {.name = section.font.Get(),
          .size = size < kLeast ? kInstead : std::min(size, kMost),
          .bold = section.bold.Get(),
          .italic = section.italic.Get(),
          .underline = section.underline.Get()};
}

}  // namespace corvex
