#include "stream/ParseScreenRecord.h"

#include "base/Text.h"

namespace corvex {

namespace {

/// Moves the part of `rest` before the next `mark` to `text` and drops the mark. Returns false if there is no
/// mark.
bool TakeUpTo(std::string_view& rest, char mark, std::string_view& text) {
  const std::size_t end = rest.find(mark);
  if (end == std::string_view::npos) return false;
  text = rest.substr(0, end);
  rest.remove_prefix(end + 1);
  return true;
}

}  // namespace

void ParseScreenRecord(std::string_view packet, ScreenRecord& record) {
  ClearScreenRecord(record);

  static constexpr std::string_view kTitleTag = "Title>";
  const std::size_t title = FindNoCase(packet, "Title");
  if (title == std::string_view::npos || packet.size() - title < kTitleTag.size()) return;
  std::string_view rest = packet.substr(title + kTitleTag.size());

  std::string_view text;
  if (!TakeUpTo(rest, '<', text)) return;
  record.title = text;
  record.numericTitle = !text.empty() && IsDigit(text.front());

  std::string_view word;
  for (;;) {
    if (!TakeUpTo(rest, '>', word)) return;
    if (EqualNoCase(word, "INDEXLINE")) break;
    if (record.count == ScreenRecord::kMaxItems) return;
    // An item counts as soon as its tag is complete. If the packet ends there, the item has no text.
    ScreenRecord::Item& item = record.items[static_cast<std::size_t>(record.count++)];
    const auto id = PrefixInt32(word);
    if (!id) return;
    item.id = *id;
    if (!TakeUpTo(rest, '<', text)) return;
    item.text = text;
  }
  if (TakeUpTo(rest, '<', text)) record.current = PrefixInt32(text).value_or(0);
}

}  // namespace corvex
