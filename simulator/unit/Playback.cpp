#include "unit/Playback.h"

#include <algorithm>
#include <utility>

namespace corvex::simulation {

Playback::Playback(EventLoop& loop, std::vector<WireEvent> events, std::function<void(std::string_view)> send,
                   std::function<void()> hangUp)
    : loop_(loop),
      events_(std::move(events)),
      send_(std::move(send)),
      hangUp_(std::move(hangUp)),
      timer_(loop) {}

void Playback::Receive(std::string_view bytes) {
  received_ += bytes;
  if (received_.size() > kLimit) received_.erase(0, received_.size() - kLimit);
  Proceed();
}

void Playback::LineUp() {
  lineUp_ = true;
  received_.clear();
  lastStep_ = loop_.Now();
  if (next_ >= events_.size() || events_[next_].kind != WireEvent::Kind::Open) next_ = 0;
  if (next_ < events_.size() && events_[next_].kind == WireEvent::Kind::Open) ++next_;
  Proceed();
}

void Playback::LineDown() {
  lineUp_ = false;
  timer_.Stop();
  while (next_ < events_.size() && events_[next_].kind != WireEvent::Kind::Open) ++next_;
}

void Playback::Proceed() {
  timer_.Stop();
  while (lineUp_ && next_ < events_.size() && TryStep(events_[next_])) StepDone();
}

bool Playback::TryStep(const WireEvent& event) {
  const EventLoop::Time due = lastStep_ + Recorded();
  const EventLoop::Time latest = due + kPatience;
  switch (event.kind) {
    case WireEvent::Kind::Open:  // opened again without a close in the recording
    case WireEvent::Kind::Note:
      return loop_.Now() >= due || WaitUntil(due);
    case WireEvent::Kind::FromModem:
      if (loop_.Now() >= due) {
        send_(event.bytes);
        return true;
      }
      return WaitUntil(due);
    case WireEvent::Kind::ToModem:
      return TakeExpected(event.bytes) || loop_.Now() >= latest || WaitUntil(latest);
    case WireEvent::Kind::Lost:
    case WireEvent::Kind::Close:
      if (const auto end = event.kind == WireEvent::Kind::Lost ? due : latest; loop_.Now() < end) {
        return WaitUntil(end);
      }
      lineUp_ = false;
      hangUp_();
      return false;
  }
  return false;
}

bool Playback::WaitUntil(EventLoop::Time time) {
  timer_.Start(time - loop_.Now(), [this] { Proceed(); });
  return false;
}

bool Playback::TakeExpected(std::string_view bytes) {
  // The recording hides passwords; any line matches.
  if (bytes == kPasswordLine) bytes.remove_prefix(bytes.size() - 2);
  const std::size_t at = received_.find(bytes);
  if (at == std::string::npos) return false;
  received_.erase(0, at + bytes.size());
  return true;
}

void Playback::StepDone() {
  lastStep_ = loop_.Now();
  ++next_;
}

EventLoop::Time Playback::Recorded() const {
  const double before = next_ == 0 ? 0 : events_[next_ - 1].at;
  return std::chrono::duration_cast<EventLoop::Time>(
      std::chrono::duration<double>(events_[next_].at - before));
}

}  // namespace corvex::simulation
