#include "stream/ItemSearch.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "base/Text.h"

namespace corvex {

namespace {

/// The introducer of a trace record includes the record's length as four digits.
constexpr std::size_t kLengthDigits = 4;
constexpr std::size_t kTraceIntroducer = kTraceStart.size() + kLengthDigits;
/// A trace record is ignored until at least this many of its characters have arrived.
constexpr std::size_t kTraceSeen = kTraceIntroducer + 3;
constexpr std::int16_t kMinTraceLength = 3;
constexpr std::int16_t kMaxTraceLength = 200;

/// Returns the length field of the trace record at the start of a text. An invalid length, or one out of
/// bounds, counts as kMinTraceLength.
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

bool WordSearch::StandsAtEnd(std::string_view text) const {
  Eight here = 0;
  std::memcpy(&here, text.data(), length_);
  return IsWord(here);
}

void WordSearch::GoOn(std::string_view text, std::size_t end) {
  const std::size_t last = std::min(text.size() - length_ + 1, end);
  std::size_t at = reached_ + 1;
  for (; at < last; ++at) {
    const char* const from = text.data() + rare_ + at;
    const void* const next = std::memchr(from, rareCharacter_, last - at);
    if (next == nullptr) {
      at = last;
      break;
    }
    at += static_cast<std::size_t>(static_cast<const char*>(next) - from);
    found_ = StandsAt(text.substr(at));
    if (found_) break;
  }
  reached_ = at;
}

void WordSearch::Shift(std::size_t count) {
  if (reached_ < count) {
    reached_ = count;
    found_ = false;
  }
  reached_ -= count;
}

ScanItem ItemSearch::Next(std::string_view text, std::size_t from) {
  // Search in the order tag, escape sequence, trace record. Each kind must begin before the item found so
  // far. A tag at the very start ends the search.
  ScanItem item;
  std::size_t place = from + static_cast<std::size_t>(item.pos) - 1;
  std::size_t introducer = 0;

  const std::size_t tag = tag_.Find(text, from, from + kLastPosition);
  if (tag != WordSearch::npos) {
    item.kind = ScanKind::TagItem;
    place = tag;
    introducer = kPacketStart.size();
  }
  // Always search for trace records up to here, even if an escape comes first. One long search is faster
  // than many short ones.
  const std::size_t end = place;
  const std::size_t escape = place > from ? escape_.Find(text, from, place) : WordSearch::npos;
  if (escape != WordSearch::npos) {
    item.kind = ScanKind::EscapeItem;
    place = escape;
    introducer = 1;
  }
  const std::size_t trace = place > from ? trace_.Find(text, from, end) : WordSearch::npos;
  if (trace < place && text.size() - trace >= kTraceSeen) {
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
