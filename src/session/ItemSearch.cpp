#include "session/ItemSearch.h"

#include <algorithm>
#include <cstring>

#include "common/Text.h"

namespace corvex {

namespace {

constexpr std::int32_t kTraceIntroducer = 11;  ///< "<Trace>" and the four digits of the record's length.
/// A trace record is passed over as if absent until this much of it stands in the text.
constexpr std::size_t kTraceSeen = kTraceIntroducer + 3;
constexpr std::int16_t kMinTraceLength = 3;
constexpr std::int16_t kMaxTraceLength = 200;

/// The length field of the trace record that a text begins with; one out of bounds stands for the least.
std::int16_t TraceLength(std::string_view record) {
  const auto length = PrefixInt16(record.substr(7, 4));
  return length && *length >= kMinTraceLength && *length <= kMaxTraceLength ? *length : kMinTraceLength;
}

}  // namespace

std::size_t WordSearch::Find(std::string_view text, std::size_t from, std::size_t end) {
  if (reached_ < from) {
    reached_ = from;
    found_ = false;
  }
  // Every word begins with a character that has no case.
  const std::size_t room = text.size() < word_.size() ? 0 : text.size() - word_.size() + 1;
  const std::size_t last = std::min(room, end);
  while (!found_ && reached_ < last) {
    const void* candidate = std::memchr(text.data() + reached_, word_.front(), last - reached_);
    if (candidate == nullptr) {
      reached_ = last;
      break;
    }
    reached_ = static_cast<std::size_t>(static_cast<const char*>(candidate) - text.data());
    found_ = EqualNoCase(text.substr(reached_ + 1, word_.size() - 1), word_.substr(1));
    if (!found_) ++reached_;
  }
  return found_ && reached_ < end ? reached_ : npos;
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
  const auto take = [&](ScanKind kind, std::size_t offset, std::int32_t introducer) {
    item.kind = kind;
    item.pos = static_cast<std::int16_t>(offset - from + 1);
    item.after = item.pos + introducer;
  };
  const auto foundBefore = [&](WordSearch& search) {
    return search.Find(text, from, from + static_cast<std::size_t>(item.pos) - 1);
  };

  const std::size_t tag = tag_.Find(text, from, from + kLastPosition);
  if (tag != WordSearch::npos) take(ScanKind::TagItem, tag, 5);
  if (item.pos == 1) return item;

  const std::size_t escape = foundBefore(escape_);
  if (escape != WordSearch::npos) take(ScanKind::EscapeItem, escape, 1);
  if (item.pos == 1) return item;

  const std::size_t trace = foundBefore(trace_);
  if (trace != WordSearch::npos && text.size() - trace >= kTraceSeen) {
    take(ScanKind::TraceItem, trace, kTraceIntroducer);
    item.traceLength = TraceLength(text.substr(trace));
  }
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
