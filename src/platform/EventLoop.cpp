#include "platform/EventLoop.h"

#include <algorithm>

namespace corvex {

namespace {

/// A pause is abandoned if it has not ended this long after its expected end.
constexpr EventLoop::Time kOverdue = std::chrono::minutes(1);

}  // namespace

void EventLoop::Wait::Pump(Time until) {
  loop_.Pump(until);
  Check();
}

void EventLoop::Wait::Check() const {
  if (began_ != loop_.abandoned_) throw WaitAbandoned{};
}

void EventLoop::Post(Task task) {
  posted_.push_back(std::move(task));
  if (posted_.size() == 1) Rearm();
}

void EventLoop::PostFromAnyThread(Task task) {
  {
    const std::lock_guard lock(threadsMutex_);
    fromThreads_.push_back(std::move(task));
    if (fromThreads_.size() > 1) return;  // the first task in the queue has already woken the loop
  }
  WakeFromAnyThread();
}

void EventLoop::TakeFromThreads() {
  const std::lock_guard lock(threadsMutex_);
  for (Task& task : fromThreads_) posted_.push_back(std::move(task));
  fromThreads_.clear();
}

EventLoop::TimerId EventLoop::After(Time delay, Task task) {
  const TimerId id = ++lastId_;
  const Time due = Now() + std::max(delay, Time::zero());
  timers_.emplace(std::pair{due, id}, std::move(task));
  dueTimes_.emplace(id, due);
  Rearm();
  return id;
}

void EventLoop::Cancel(TimerId id) {
  const auto due = dueTimes_.find(id);
  if (due == dueTimes_.end()) return;
  timers_.erase({due->second, id});
  dueTimes_.erase(due);
  Rearm();
}

void EventLoop::Pump(Time until) {
  if (ended_) throw ProgramEnded{};
  TakeFromThreads();
  if (AnythingDue()) {
    RunDue();
    Poll();
  } else {
    Sleep(std::min(until, NextDue()));
    if (!ended_) RunDue();
  }
  if (ended_) throw ProgramEnded{};
}

void EventLoop::RunDue() {
  TakeFromThreads();
  // Runs only the tasks that are queued now. Otherwise a task that posts itself again would keep the platform
  // from handling its own events.
  for (std::size_t count = posted_.size(); count > 0 && !posted_.empty() && !ended_; --count) {
    const Task task = std::move(posted_.front());
    posted_.pop_front();
    Rearm();  // The task may start a nested loop of the platform, which must run the remaining tasks.
    RunTask(task);
  }
  const Time now = Now();
  const TimerId newest = lastId_;
  while (!timers_.empty() && !ended_) {
    const auto first = timers_.begin();
    if (first->first.first > now || first->first.second > newest) break;
    const Task task = std::move(first->second);
    dueTimes_.erase(first->first.second);
    timers_.erase(first);
    Rearm();
    RunTask(task);
  }
  Rearm();
}

/// Runs a task. Then runs the task passed to AbandonWaits and the tasks passed to PostForQuiet, as soon as
/// the stack is free of the waits that block them.
void EventLoop::RunTask(const Task& task) {
  try {
    task();
  } catch (const WaitAbandoned&) {
  }
  while (!ended_) {
    Task then;
    if (next_ && waits_ == waitsBelow_) {
      then = std::exchange(next_, {});
    } else if (!quiet_.empty() && waits_ == 0 && modal_ == 0) {
      then = std::move(quiet_.front());
      quiet_.pop_front();
    } else {
      return;
    }
    try {
      then();
    } catch (const WaitAbandoned&) {
    }
  }
}

void EventLoop::PostForQuiet(Task task) {
  quiet_.push_back(std::move(task));
  Post([] {});  // An empty task, so that RunTask checks `quiet_`.
}

void EventLoop::AbandonWaits(Task next) {
  ++abandoned_;
  if (waits_ == waitsBelow_) {
    next_ = {};
    next();
  } else {
    next_ = std::move(next);
  }
}

bool EventLoop::Enter(const Task& task) {
  if (ended_) return false;
  try {
    RunTask(task);
  } catch (const ProgramEnded&) {
  }
  // If the program has ended, the task may be incomplete, and the tasks in the queue never run.
  return !ended_;
}

void EventLoop::End() {
  if (ended_) return;
  ended_ = true;
  Quit();
}

EventLoop::Time EventLoop::NextDue() const {
  if (!posted_.empty()) return Now();
  return timers_.empty() ? Time::max() : timers_.begin()->first.first;
}

bool EventLoop::AnythingDue() const {
  return !posted_.empty() || (!timers_.empty() && timers_.begin()->first.first <= Now());
}

void EventLoop::Rearm() {
  WakeAt(NextDue());
}

void Pause(EventLoop& loop, double seconds) {
  const auto clock = [&loop] { return static_cast<float>(loop.SecondsSinceMidnight()); };
  const double deadline = static_cast<double>(clock()) + seconds;
  const auto overdue =
      loop.Now() + std::chrono::ceil<EventLoop::Time>(std::chrono::duration<double>(seconds)) + kOverdue;
  EventLoop::Wait wait(loop);
  for (double now = clock(); now < deadline; now = clock()) {
    const auto rest = std::chrono::duration<double>(deadline - now);
    // At least one millisecond: the time-of-day clock may be coarser than the remaining time.
    const auto step =
        std::max(std::chrono::ceil<std::chrono::milliseconds>(rest), std::chrono::milliseconds(1));
    wait.Pump(std::min(loop.Now() + step, overdue));
    // If the deadline has passed too, the pause ends normally. This happens when a message box stays open for
    // a long time during the pause.
    if (loop.Now() >= overdue && clock() < deadline) throw WaitAbandoned{.overdue = true};
  }
}

void PauseThrough(EventLoop& loop, double seconds) {
  try {
    Pause(loop, seconds);
  } catch (const WaitAbandoned& wait) {
    if (!wait.overdue) throw;
  }
}

void LetEventsRun(EventLoop& loop) {
  EventLoop::Wait(loop).Pump(loop.Now());
}

void PauseShort(EventLoop& loop) {
  Pause(loop, 0.1);
}

}  // namespace corvex
