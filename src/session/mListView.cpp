#include "session/mListView.h"

#include "base/Text.h"

namespace corvex {

void SetListSpacing(ListView& list, std::string_view spacing, Dialogs& dialogs) {
  const auto fields = Split(spacing, ',');
  const auto horizontal = ToInt16(fields[0]);
  const auto vertical = fields.size() > 1 ? ToInt16(fields[1]) : std::nullopt;
  if (!horizontal || !vertical) {
    dialogs.MessageBox("Error interpreting value: " + std::string(spacing));
    return;
  }
  list.iconSpacing = static_cast<std::uint32_t>(static_cast<std::uint16_t>(*vertical)) << 16 |
                     static_cast<std::uint16_t>(*horizontal);
}

}  // namespace corvex
