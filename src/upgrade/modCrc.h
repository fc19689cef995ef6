#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace corvex {

/// The table of the CRC-16 with which the modem checks its segments: reflected polynomial 0xA001. For
/// reference only. The modem computes and compares the CRC alone.
std::array<std::uint16_t, 256> CrcTable();

/// The table as 32 lines of 80 characters, each with 8 entries as "&H00,&H00,", the high byte first. The
/// lines end in LF.
std::string CrcTableText();

/// Returns the time that is left of a download, for example "3 minutes and 20 seconds". All times are in
/// seconds.
/// `lastDuration`: how long the last complete download of the same file took; a text from the settings.
/// `started`, `now`: times of day. After midnight, `now` is smaller, and no time counts as elapsed.
std::string TimeRemaining(const std::string& lastDuration, float started, float now);

}  // namespace corvex
