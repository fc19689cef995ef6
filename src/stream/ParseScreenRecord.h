#pragma once

#include <string_view>

#include "state/ScreenRecord.h"

namespace corvex {

/// Reads the list record in a tag packet:
///
///   Title> title <id> item text <id> item text ... <INDEXLINE> current <
///
/// A packet that breaks off leaves what was read up to there.
void ParseScreenRecord(std::string_view packet, ScreenRecord& record);

}  // namespace corvex
