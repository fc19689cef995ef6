#pragma once

#include <algorithm>

#include "platform/Geometry.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// The font that a section of the settings asks for, printer or screen. The size there may be any number, and
/// is one here that can be shown and printed.
template <typename Section>
Font SettingFont(const Section& section) {
  constexpr std::int32_t kLeast = 1;
  constexpr std::int32_t kMost = 200;
  constexpr double kInstead = 12;  // for what is no size at all
  const std::int32_t size = section.fontsize.Get();
  return {.name = section.font.Get(),
          .size = size < kLeast ? kInstead : std::min(size, kMost),
          .bold = section.bold.Get(),
          .italic = section.italic.Get(),
          .underline = section.underline.Get()};
}

}  // namespace corvex
