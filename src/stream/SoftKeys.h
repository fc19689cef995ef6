#pragma once

#include <string_view>

#include "state/SessionState.h"

namespace corvex {

/// Stores the soft keys of a packet in `state`: four pairs of text and image number, all separated by "|".
/// The byte 127 represents a blank.
///
/// A complete line sets `softKeysChanged`. A line with a mail key (code 1) or a hidden key (code 11) is
/// stored with `softKeysChanged` cleared. An incomplete line is stored up to the first bad field, also with
/// the flag cleared. A line that contains the byte 196 is for other receivers and changes nothing.
void ParseSoftKeys(std::string_view packet, SessionState& state);

/// Inserts "&" in each key's text before the letter that selects the key together with Alt. The last key gets
/// its letter first. Stops at a key whose text is `mailText`.
void AssignHotKeys(SessionState& state);

}  // namespace corvex
