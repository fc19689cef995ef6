#include "session/ItemSearch.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "common/Text.h"

namespace corvex {

namespace {

/// A trace record's introducer has its length in it, in four digits.
constexpr std::size_t kLengthDigits = 4;
constexpr std::size_t kTraceIntroducer = kTraceStart.size() + kLengthDigits;
/// The record is passed over as if absent until this much of it stands in the text.
constexpr std::size_t kTraceSeen = kTraceIntroducer + 3;
constexpr std::int16_t kMinTraceLength = 3;
constexpr std::int16_t kMaxTraceLength = 200;

/// The length field of the trace record that a text begins with; one out of bounds stands for the least.
std::int16_t TraceLength(std::string_view record) {
  const auto length = PrefixInt16(record.substr(kTraceStart.size(), kLengthDigits));
  return length && *length >= kMinTraceLength && *length <= kMaxTraceLength ? *length : kMinTraceLength;
}

}  // namespace

WordSearch::WordSearch(std::string_view word, std::size_t rare)
    : length_(word.size()), rare_(rare), rareCharacter_(word[rare]) {
  std::array<char, sizeof(Eight)> lower{};
  std::array<char, sizeof(Eight)> fold{};
  std::array<char, sizeof(Eight)> width{};
  for (std::size_t i = 0; i < word.size(); ++i) {
    const bool letter = (word[i] >= 'a' && word[i] <= 'z') || (word[i] >= 'A' && word[i] <= 'Z');
    fold[i] = letter ? '\x20' : '\0';
    lower[i] = static_cast<char>(word[i] | fold[i]);
    width[i] = '\xFF';
  }
  word_ = std::bit_cast<Eight>(lower);
  fold_ = std::bit_cast<Eight>(fold);
  width_ = std::bit_cast<Eight>(width);
}

bool WordSearch::StandsAt(std::string_view text, std::size_t place) const {
  Eight here = 0;
  if (text.size() - place >= sizeof here) {
    std::memcpy(&here, text.data() + place, sizeof here);
  } else {
    std::memcpy(&here, text.data() + place, length_);
  }
  return ((here & width_) | fold_) == word_;
}

void WordSearch::GoOn(std::string_view text, std::size_t end) {
  const std::size_t last = std::min(text.size() - length_ + 1, end);
  const char* const rare = text.data() + rare_;
  for (; reached_ < last; ++reached_) {
    if (rare[reached_] != rareCharacter_) {
      const void* next = std::memchr(rare + reached_, rareCharacter_, last - reached_);
      reached_ = next == nullptr ? last : static_cast<std::size_t>(static_cast<const char*>(next) - rare);
      if (next == nullptr) return;
    }
    found_ = StandsAt(text, reached_);
    if (found_) return;
  }
}

void WordSearch::Shift(std::size_t count) {
  if (reached_ < count) {
    reached_ = count;
    found_ = false;
  }
  reached_ -= count;
}

ScanItem ItemSearch::Next(std::string_view text, std::size_t from) {
  // A tag at the very start wins at once; then each later kind must stand strictly before what has been
  // found.
  ScanItem item;
  std::size_t place = from + static_cast<std::size_t>(item.pos) - 1;
  std::size_t introducer = 0;

  const std::size_t tag = tag_.Find(text, from, from + kLastPosition);
  if (tag != WordSearch::npos) {
    item.kind = ScanKind::TagItem;
    place = tag;
    introducer = kPacketStart.size();
  }
  const std::size_t escape = place > from ? escape_.Find(text, from, place) : WordSearch::npos;
  if (escape != WordSearch::npos) {
    item.kind = ScanKind::EscapeItem;
    place = escape;
    introducer = 1;
  }
  const std::size_t trace = place > from ? trace_.Find(text, from, place) : WordSearch::npos;
  if (trace != WordSearch::npos && text.size() - trace >= kTraceSeen) {
    item.kind = ScanKind::TraceItem;
    place = trace;
    introducer = kTraceIntroducer;
    item.traceLength = TraceLength(text.substr(trace));
  }

  item.pos = static_cast<std::int16_t>(place - from + 1);
  if (item.kind != ScanKind::None) item.after = item.pos + static_cast<std::int32_t>(introducer);
  return item;
}

void ItemSearch::Shift(std::size_t count) {
  tag_.Shift(count);
  escape_.Shift(count);
  trace_.Shift(count);
}

ScanItem FindNextItem(std::string_view text) {
  return ItemSearch().Next(text, 0);
}

}  // namespace corvex
