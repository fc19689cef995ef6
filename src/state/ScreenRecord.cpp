#include "state/ScreenRecord.h"

namespace corvex {

void ClearScreenRecord(ScreenRecord& record) {
  // The items from `count` on still have their default values.
  for (int i = 0; i < record.count; ++i) {
    ScreenRecord::Item& item = record.items[static_cast<std::size_t>(i)];
    item.id = 0;
    item.text.clear();  // the string keeps its memory for the next list
    item.icon = 10;
  }
  record.title.clear();
  record.numericTitle = false;
  record.current = 0;
  record.count = 0;
}

int ChoiceIndexOfCurrent(const ScreenRecord& record) {
  for (int i = 0; i < record.count; ++i) {
    if (record.items[static_cast<std::size_t>(i)].id == record.current) return i;
  }
  return 0;
}

}  // namespace corvex
