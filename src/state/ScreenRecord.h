#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace corvex {

/// One menu or choice list as the modem sent it.
struct ScreenRecord {
  static constexpr int kMaxItems = 40;

  struct Item {
    std::int32_t id = 0;
    std::string text;
    std::int16_t icon = 10;
    friend bool operator==(const Item&, const Item&) = default;
  };

  std::string title;
  bool numericTitle = false;          ///< The title begins with a digit, as those below the main menu do.
  std::array<Item, kMaxItems> items;  ///< Those from `count` on are as they were made.
  std::int32_t current = 0;           ///< The id of the item that the modem's cursor stands on.
  std::int16_t count = 0;
  friend bool operator==(const ScreenRecord&, const ScreenRecord&) = default;
};

void ClearScreenRecord(ScreenRecord& record);

/// Place from 0 of the item whose id is `current`; 0 if there is none.
int ChoiceIndexOfCurrent(const ScreenRecord& record);

}  // namespace corvex
