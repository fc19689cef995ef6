#pragma once

#include <algorithm>

#include "platform/Geometry.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// Returns the font of a settings section, which is the printer's or the screen's. The size is in points. A
/// stored size below 1 becomes 12, and a stored size above 200 becomes 200.
template <typename Section>
Font SettingFont(const Section& section) {
  constexpr std::int32_t kLeast = 1;
  constexpr std::int32_t kMost = 200;
  constexpr double kInstead = 12;  // replaces a size below kLeast
  const std::int32_t size = section.fontsize.Get();
  return {.name = section.font.Get(),
          .size = size < kLeast ? kInstead : std::min(size, kMost),
          .bold = section.bold.Get(),
          .italic = section.italic.Get(),
          .underline = section.underline.Get()};
}

}  // namespace corvex
