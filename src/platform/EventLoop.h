#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace corvex {

/// Thrown by EventLoop::Pump once the program is to end, so that every wait on the stack unwinds. Only
/// EventLoop::Enter catches it; it must never pass through frames of the window system.
struct ProgramEnded {};

/// Thrown by a wait that is given up: what was waiting stops where it is, and its guards end with their
/// scope. It ends the task, the click or the tick in which the wait began, and nothing else: EventLoop::Enter
/// and EventLoop::RunDue catch it.
struct WaitAbandoned {
  bool overdue = false;  ///< Nobody has given the wait up, but it should have ended a minute ago.
};

/// Time as a dependency: the clock, one-shot timers, posted tasks, and the one way of waiting.
///
/// The order of what is due is kept here, the same for every platform; a platform adds its clock and how to
/// sleep. All calls come from the one thread of the program, but for PostFromAnyThread.
class EventLoop {
 public:
  using Time = std::chrono::nanoseconds;  ///< A point on the monotonic clock, or a distance on it.
  using Task = std::function<void()>;
  using TimerId = std::uint64_t;  ///< 0 is never a timer.

  /// A wait that can be given up, for as long as it lives. Only what stands on the stack is made of it.
  class Wait {
   public:
    explicit Wait(EventLoop& loop) : loop_(loop), began_(loop.abandoned_) { ++loop.waits_; }
    ~Wait() { --loop_.waits_; }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
    /// As EventLoop::Pump, and then Check.
    void Pump(Time until = Time::max());
    /// Throws WaitAbandoned if the wait has been given up.
    void Check() const;

   private:
    EventLoop& loop_;
    unsigned began_;
  };

  /// The time in which a window or a question holds up everything below it on the stack, until the user
  /// answers. What is begun in it does not wait for that.
  class Modal {
   public:
    explicit Modal(EventLoop& loop) : loop_(loop), below_(loop.waitsBelow_) {
      loop.waitsBelow_ = loop.waits_;
      ++loop.modal_;
    }
    ~Modal() {
      loop_.waitsBelow_ = below_;
      --loop_.modal_;
    }
    Modal(const Modal&) = delete;
    Modal& operator=(const Modal&) = delete;

   private:
    EventLoop& loop_;
    int below_;
  };

  EventLoop() = default;
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;
  virtual ~EventLoop() = default;

  /// The monotonic clock.
  virtual Time Now() const = 0;

  /// The local time of day in seconds, 0 to below 86400. It falls back to 0 at midnight.
  virtual double SecondsSinceMidnight() const = 0;

  /// Local calendar time in seconds since 1970-01-01 00:00 of the local time zone, for names and stamps.
  virtual std::int64_t LocalSeconds() const = 0;

  /// Queues a task; tasks run in the order of their posting, from the next Pump or RunDue on.
  void Post(Task task);

  /// Post for the threads that serve a device. The task itself runs on the loop's thread, and has to find out
  /// there whether the object it was meant for still exists. Such a thread must end before the loop is
  /// destroyed. A task that comes after the end of the program is not run.
  void PostFromAnyThread(Task task);

  /// Queues a task that runs when no wait and no Modal is on the stack: one that opens a message box would
  /// hold them up until the user answers.
  void PostForQuiet(Task task);

  /// Runs the task once, `delay` from now.
  TimerId After(Time delay, Task task);

  /// Forgets a timer; an id that has fired or is 0 is ignored.
  void Cancel(TimerId id);

  /// Runs what is due, or sleeps until something is, at the latest until `until`.
  /// Throws ProgramEnded once End has been called.
  void Pump(Time until = Time::max());

  /// Runs what was due at the call: tasks first, then timers by their time. Never waits. A platform calls it
  /// from within Enter.
  void RunDue();

  /// Every entry from the platform into the program (a click, a tick, received bytes) goes through here: runs
  /// `task` unless the program has ended, and ends a wait that unwinds. Returns false if the program ended.
  bool Enter(const Task& task);

  /// Gives up every Wait on the stack, and runs `next` when they have unwound; at once if there is none. So
  /// what replaces a dialogue never runs on top of it, and impatient clicks do not pile up on the stack. Of
  /// several calls before the unwinding the last one counts.
  void AbandonWaits(Task next);

  /// How many waits stand on the stack.
  int Waits() const { return waits_; }
  /// How many Modals live.
  int ModalsOpen() const { return modal_; }

  /// From now on Pump throws. The windows stay for their owner to destroy.
  void End();
  bool Ended() const { return ended_; }

 protected:
  /// Sleeps until `until`, until an event of the platform has been handled, or until WakeAt moves the time
  /// forward. May return early. `until` is never earlier than now by more than the time of the call.
  virtual void Sleep(Time until) = 0;

  /// Lets the platform handle what waits for it without sleeping.
  virtual void Poll() = 0;

  /// The earliest due time has changed; Time::max() means that nothing is due.
  virtual void WakeAt(Time time) = 0;

  /// Called by another thread: ends a Sleep, one that begins a moment later included, and if a loop of the
  /// platform's own is running, has it call RunDue.
  virtual void WakeFromAnyThread() = 0;

  /// The program is to end: leave the platform's own loop.
  virtual void Quit() {}

  Time NextDue() const;

 private:
  bool AnythingDue() const;
  void TakeFromThreads();
  void Rearm();
  void RunTask(const Task& task);

  std::deque<Task> posted_;
  std::map<std::pair<Time, TimerId>, Task> timers_;  // by time, then by order of starting
  std::map<TimerId, Time> dueTimes_;
  TimerId lastId_ = 0;
  bool ended_ = false;
  int waits_ = 0;       // on the stack,
  int waitsBelow_ = 0;  // and how many of them below the topmost Modal
  int modal_ = 0;
  unsigned abandoned_ = 0;  // counts the calls of AbandonWaits
  Task next_;
  std::deque<Task> quiet_;

  std::mutex threadsMutex_;
  std::deque<Task> fromThreads_;  // guarded by threadsMutex_
};

/// Waits, pumping events, until the clock of the day has moved on by `seconds`.
///
/// The clock is read in single precision as the seconds since midnight, and no account is taken of its fall
/// to 0: a pause that runs over midnight does not end by itself. That is meant. A minute after its time on
/// the monotonic clock it is given up, so that it does not hold up the program until it is closed.
void Pause(EventLoop& loop, double seconds);

/// Pause(0.1).
void PauseShort(EventLoop& loop);

}  // namespace corvex
