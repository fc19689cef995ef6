#include "panels/LineHistory.h"

#include <algorithm>

namespace corvex {

void LineHistory::RecordLine(const std::string& text) {
  if (text.empty()) return;
  std::rotate(history_.begin(), history_.end() - 1, history_.end());
  history_[0] = text;
  scratch_ = text;
  historyPos_ = 1;
}

const std::string& LineHistory::RecallOlder() {
  if (historyPos_ < kEntries) ++historyPos_;
  return Entry();
}

const std::string& LineHistory::RecallNewer() {
  if (historyPos_ < 2) return scratch_;
  --historyPos_;
  return Entry();
}

void LineHistory::NoteScratch(const std::string& text) {
  if (historyPos_ == 1) scratch_ = text;
}

}  // namespace corvex
