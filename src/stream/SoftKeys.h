#pragma once

#include <string_view>

#include "state/SessionState.h"

namespace corvex {

/// Takes over a soft key line: four pairs of text and image number, separated by "|", 127 standing for a
/// blank. A line with a mail key (code 1) or one that is not to be shown (code 11) is stored without
/// `softKeysChanged`; so is one that breaks off, as far as it goes. A line with the character 196 is not for
/// this program.
void ParseSoftKeys(std::string_view packet, SessionState& state);

/// Puts "&" before the letter of each key's text that is to work with Alt; later keys choose first.
void AssignHotKeys(SessionState& state);

}  // namespace corvex
