#include "forms/Controls.h"

#include <algorithm>
#include <chrono>

#include "base/ScopedFlag.h"

namespace corvex {

void TextBox::Edit(std::size_t position, std::size_t removed, std::string_view inserted) {
  position = std::min(position, text_.size());
  removed = std::min(removed, text_.size() - position);
  if (removed == 0 && inserted.empty()) return;
  if (form().observer != nullptr) form().observer->TextEdited(*this, position, removed, inserted);
  AdoptEdit(position, removed, inserted);
}

void TextBox::AdoptEdit(std::size_t position, std::size_t removed, std::string_view inserted) {
  position = std::min(position, text_.size());
  removed = std::min(removed, text_.size() - position);
  text_.replace(position, removed, inserted);
  const auto [start, length] = selection.Get();
  const auto moved = [&](std::size_t place) {
    if (place >= position + removed) return place - removed + inserted.size();
    return std::min(place, position);
  };
  const std::size_t newStart = moved(start);
  // Text that is inserted directly after the selection does not become part of it.
  const std::size_t end = start + length;
  const std::size_t newEnd = length > 0 && end == position + removed ? position : moved(end);
  selection.Adopt({newStart, newEnd - std::min(newStart, newEnd)});
  edited(position, removed, inserted.size());
}

void TextBox::ReplaceSelection(std::string_view text) {
  const auto [start, length] = selection.Get();
  const std::size_t at = std::min(start, text_.size());
  Edit(at, length, text);
  selection = Selection{at + text.size(), 0};
}

void TextBox::AdoptText(std::string text) {
  const std::size_t removed = text_.size();
  text_ = std::move(text);
  edited(0, removed, text_.size());
}

UpDown::UpDown(Container& parent, const Design& design, TextBox& buddy, int min, int max)
    : Control(parent, design), value{*this, Change::Value, min}, buddy_(buddy), min_(min), max_(max) {
  buddy_.tag = std::to_string(min);
}

void UpDown::AdoptValue(int stepped) {
  value.Adopt(std::clamp(stepped, min_, max_));
  buddy_.tag = std::to_string(value.Get());
}

void UpDown::Changed(Change what) {
  if (what == Change::Value) AdoptValue(value);
  Control::Changed(what);
}

std::string_view TextBox::SelText() const {
  const std::size_t start = std::min(selection.Get().start, text_.size());
  return std::string_view(text_).substr(start, selection.Get().length);
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

void ComboBox::SetItems(std::vector<std::string> items) {
  items_ = std::move(items);
  listIndex.Adopt(-1);
  Changed(Change::Items);
}

std::string ComboBox::Text() const {
  const auto index = static_cast<std::size_t>(listIndex);
  return index < items_.size() ? items_[index] : std::string();
}

Timer::Timer(Form& form, const Design& design)
    : Control(form, design), tick(run_->tick), interval_(design.interval) {
  if (enabled) Start();
}

Timer::~Timer() {
  run_->timerGone = true;
  Stop();
}

void Timer::Changed(Change change) {
  if (change != Change::Enabled) return;
  Stop();
  if (enabled) Start();
}

void Timer::Start() {
  // If the handler enables its own timer, Tick starts the next interval after the handler has returned.
  if (run_->ticking) return;
  pending_ = form().loop().After(std::chrono::milliseconds(interval_), [this] { Tick(); });
}

void Timer::Tick() {
  pending_ = 0;
  /// Starts the next interval, even if an abandoned wait has ended the handler with an exception.
  struct Restart {
    Timer& timer;
    const std::shared_ptr<Run> run;
    ~Restart() {
      if (!run->timerGone && timer.enabled && timer.pending_ == 0 && !timer.form().loop().Ended())
        timer.Start();
    }
  };
  const Restart restart{*this, run_};
  const ScopedFlag ticking(restart.run->ticking);
  restart.run->tick();
}

void Timer::Stop() {
  form().loop().Cancel(pending_);
  pending_ = 0;
}

}  // namespace corvex
