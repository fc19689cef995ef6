#include "forms/Controls.h"

#include <algorithm>
#include <chrono>

namespace corvex {

void TextBox::Edit(std::size_t position, std::size_t removed, std::string_view inserted) {
  position = std::min(position, text_.size());
  removed = std::min(removed, text_.size() - position);
  if (removed == 0 && inserted.empty()) return;
  if (form().observer != nullptr) form().observer->TextEdited(*this, position, removed, inserted);
  text_.replace(position, removed, inserted);
}

void TextBox::AdoptText(std::string text) {
  text_ = std::move(text);
  change();
}

void ListView::Clear() {
  selected = 0;
  if (items_.empty()) return;
  items_.clear();
  Changed(Change::Items);
}

void ListView::Add(ListItem item) {
  items_.push_back(std::move(item));
  Changed(Change::Items);
}

void ListBox::Clear() {
  listIndex = -1;
  if (items_.empty()) return;
  items_.clear();
  Changed(Change::Items);
}

void ListBox::AddItem(std::string text) {
  items_.push_back(std::move(text));
  Changed(Change::Items);
}

Timer::Timer(Form& form, const Design& design) : Control(form, design), interval_(design.interval) {
  if (enabled) Start();
}

void Timer::Changed(Change change) {
  if (change != Change::Enabled) return;
  Stop();
  if (enabled) Start();
}

void Timer::Start() {
  // A tick that enables its own timer is served by the restart after it.
  if (ticking_) return;
  pending_ = form().loop().After(std::chrono::milliseconds(interval_), [this] {
    pending_ = 0;
    // Unwinds with the tick if the program ends in the middle of it.
    struct Ticking {
      bool& flag;
      explicit Ticking(bool& f) : flag(f) { flag = true; }
      ~Ticking() { flag = false; }
    };
    {
      const Ticking ticking(ticking_);
      tick();
    }
    if (enabled && pending_ == 0) Start();
  });
}

void Timer::Stop() {
  form().loop().Cancel(pending_);
  pending_ = 0;
}

}  // namespace corvex
