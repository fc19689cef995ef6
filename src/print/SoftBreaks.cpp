#include "print/SoftBreaks.h"

#include <algorithm>

namespace corvex {

namespace {

constexpr std::size_t kSize = 2;  ///< CR LF

}  // namespace

void SoftBreaks::Edited(std::size_t place, std::size_t removed, std::size_t inserted) {
  if (removed == 0 && inserted == 0) return;
  const std::size_t end = place + removed;
  const auto touched = std::partition_point(places_.begin(), places_.end(),
                                            [&](std::size_t at) { return at + kSize <= place; });
  const auto following =
      std::partition_point(touched, places_.end(), [&](std::size_t at) { return at < end; });
  for (auto at = places_.erase(touched, following); at != places_.end(); ++at) *at = *at - removed + inserted;
}

void SoftBreaks::Add(std::size_t place) {
  places_.insert(std::upper_bound(places_.begin(), places_.end(), place), place);
}

std::size_t SoftBreaks::InText(std::size_t shown) const {
  const auto next = std::lower_bound(places_.begin(), places_.end(), shown);
  const auto before = static_cast<std::size_t>(next - places_.begin());
  if (before == 0) return shown;
  // A position between CR and LF maps to the same position as one after LF.
  return std::max(shown, *(next - 1) + kSize) - before * kSize;
}

std::size_t SoftBreaks::AfterBreak(std::size_t place) const {
  for (const std::size_t at : places_) {
    if (at > place) break;
    place += kSize;
  }
  return place;
}

std::size_t SoftBreaks::BeforeBreak(std::size_t place) const {
  for (const std::size_t at : places_) {
    if (at >= place) break;
    place += kSize;
  }
  return place;
}

std::string SoftBreaks::Text(std::string_view shown, std::size_t from, std::size_t to) const {
  to = std::min(to, shown.size());
  std::string text;
  text.reserve(to - std::min(from, to));
  for (auto at = std::lower_bound(places_.begin(), places_.end(), from); at != places_.end(); ++at) {
    if (*at >= to) break;
    text += shown.substr(from, *at - from);
    from = std::min(*at + kSize, to);
  }
  return text += shown.substr(std::min(from, to), to - std::min(from, to));
}

}  // namespace corvex
