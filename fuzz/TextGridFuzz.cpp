// Writes arbitrary escape sequences and texts to the grid, taken alternately from the lines of the input.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/Text.h"
#include "stream/ItemSearch.h"
#include "stream/TextGrid.h"

using namespace corvex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SessionState state;
  TextGrid grid(state);
  Fields lines({reinterpret_cast<const char*>(data), size}, '\n');
  while (lines.More()) {
    const std::string_view sequence = lines.Next();
    const std::int16_t taken = grid.MatchEscape(sequence);
    const bool whole =
        taken == 0 ? sequence.size() < TextGrid::kMaxSequence : taken >= 2 && taken <= TextGrid::kMaxSequence;
    if (!whole) std::abort();
    grid.WriteScreenText(lines.Next());
    for (int row = 1; row <= SessionState::kRows; ++row) {
      if (grid.RowForDisplay(row).size() < SessionState::kColumns - 1) std::abort();
      if (grid.RowForDisplay(row).size() >= kLastPosition) std::abort();
    }
  }
  return 0;
}
