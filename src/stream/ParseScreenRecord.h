#pragma once

#include <string_view>

#include "state/ScreenRecord.h"

namespace corvex {

/// Parses the list record in a tag packet:
///
///   Title> title <id> item text <id> item text ... <INDEXLINE> current <
///
/// If the packet is incomplete, `record` contains everything that was read before the end. Parsing stops
/// after ScreenRecord::kMaxItems items.
void ParseScreenRecord(std::string_view packet, ScreenRecord& record);

}  // namespace corvex
