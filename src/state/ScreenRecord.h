#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace corvex {

/// A menu or choice list as sent by the modem.
struct ScreenRecord {
  static constexpr int kMaxItems = 40;

  struct Item {
    std::int32_t id = 0;
    std::string text;
    std::int16_t icon = 10;
    friend bool operator==(const Item&, const Item&) = default;
  };

  std::string title;
  bool numericTitle = false;          ///< The title begins with a digit, as in all submenus.
  std::array<Item, kMaxItems> items;  ///< Items from `count` on have default values.
  std::int32_t current = 0;           ///< The id of the item under the modem's cursor.
  std::int16_t count = 0;
  friend bool operator==(const ScreenRecord&, const ScreenRecord&) = default;
};

void ClearScreenRecord(ScreenRecord& record);

/// Returns the index, from 0, of the item whose id is `current`, or 0 if there is no such item.
int ChoiceIndexOfCurrent(const ScreenRecord& record);

}  // namespace corvex
