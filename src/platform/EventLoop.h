#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace corvex {

/// Thrown by EventLoop::Pump when the program ends, so that every wait on the stack unwinds. Only
/// EventLoop::Enter catches it. It must never pass through stack frames of the window system.
struct ProgramEnded {};

/// Thrown by a wait that is abandoned. The waiting code stops where it is, and its scope guards run. The
/// exception ends only the task, click or tick in which the wait began: EventLoop::Enter and
/// EventLoop::RunDue catch it.
struct WaitAbandoned {
  bool overdue = false;  ///< True if the wait was abandoned because it was one minute overdue (see Pause).
};

/// The program's source of time: a clock, one-shot timers, posted tasks, and the only way to wait.
///
/// This base class decides the order in which tasks and timers run, so the order is the same on every
/// platform. A platform adds a clock and a way to sleep. All functions except PostFromAnyThread must be
/// called from the program's main thread.
class EventLoop {
 public:
  using Time = std::chrono::nanoseconds;  ///< A point on the monotonic clock, or a duration.
  using Task = std::function<void()>;
  using TimerId = std::uint64_t;  ///< 0 is never a valid timer.

  /// A wait that can be abandoned. The wait lasts for the lifetime of the object, which must be on the stack.
  class Wait {
   public:
    explicit Wait(EventLoop& loop) : loop_(loop), began_(loop.abandoned_) { ++loop.waits_; }
    ~Wait() { --loop_.waits_; }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;
    /// Calls EventLoop::Pump, then Check.
    void Pump(Time until = Time::max());
    /// Throws WaitAbandoned if the wait has been abandoned.
    void Check() const;

   private:
    EventLoop& loop_;
    unsigned began_;
  };

  /// Marks the time during which a modal window or a question blocks everything below it on the stack, until
  /// the user answers. A task passed to AbandonWaits in that time does not wait for the user's answer.
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

  /// The local time of day in seconds, from 0 to below 86400. It restarts at 0 at midnight.
  virtual double SecondsSinceMidnight() const = 0;

  /// Local calendar time in seconds since 1970-01-01 00:00 in the local time zone, for file names and time
  /// stamps.
  virtual std::int64_t LocalSeconds() const = 0;

  /// Queues a task. Tasks run in the order in which they were posted, starting with the next Pump or RunDue.
  void Post(Task task);

  /// The variant of Post for threads that serve a device. The task runs on the loop's thread and must check
  /// there whether its target object still exists. The calling thread must end before the loop is destroyed.
  /// A task posted after the end of the program does not run.
  void PostFromAnyThread(Task task);

  /// Queues a task that runs when no Wait and no Modal is on the stack. Intended for tasks that open a
  /// message box, which would block a wait until the user answers.
  void PostForQuiet(Task task);

  /// Runs the task once, after `delay`.
  TimerId After(Time delay, Task task);

  /// Cancels a timer. An id of 0, or of a timer that has fired, is ignored.
  void Cancel(TimerId id);

  /// Runs everything that is due. If nothing is due, sleeps until something is, but no later than `until`.
  /// Throws ProgramEnded once End has been called.
  void Pump(Time until = Time::max());

  /// Runs everything that is due at the time of the call: first tasks, then timers in order of their due
  /// time. Never waits. The platform calls it from within Enter.
  void RunDue();

  /// The only entry from the platform into the program: every click, tick and arrival of bytes goes through
  /// it. Runs `task` unless the program has ended. Catches ProgramEnded and WaitAbandoned. Returns false if
  /// the program has ended.
  bool Enter(const Task& task);

  /// Abandons every Wait on the stack. Runs `next` when every Wait above the topmost Modal has unwound, or at
  /// once if there is none. `next` therefore never runs on top of the code that it replaces, and repeated
  /// clicks do not make the stack grow. If several calls are made before the waits have unwound, only the
  /// last call takes effect.
  void AbandonWaits(Task next);

  /// The number of Wait objects on the stack.
  int Waits() const { return waits_; }
  /// The number of Modal objects on the stack.
  int ModalsOpen() const { return modal_; }

  /// Ends the program: from now on Pump throws. The windows remain until their owner destroys them.
  void End();
  bool Ended() const { return ended_; }

 protected:
  /// Sleeps until `until`, until a platform event has been handled, or until WakeAt sets an earlier time. May
  /// return early. The caller passes a time in the future; it may have just passed when the call begins.
  virtual void Sleep(Time until) = 0;

  /// Lets the platform handle its pending events without sleeping.
  virtual void Poll() = 0;

  /// Called when the earliest due time may have changed. Time::max() means that no task or timer is pending.
  virtual void WakeAt(Time time) = 0;

  /// Called by another thread. Ends the current Sleep, or the next one if it has not begun yet. If the
  /// platform runs its own loop instead, makes that loop call RunDue.
  virtual void WakeFromAnyThread() = 0;

  /// Called when the program ends. The platform leaves its own loop.
  virtual void Quit() {}

  Time NextDue() const;

 private:
  bool AnythingDue() const;
  void TakeFromThreads();
  void Rearm();
  void RunTask(const Task& task);

  std::deque<Task> posted_;
  std::map<std::pair<Time, TimerId>, Task> timers_;  // by due time, then in the order they were started
  std::map<TimerId, Time> dueTimes_;
  TimerId lastId_ = 0;
  bool ended_ = false;
  int waits_ = 0;           // number of Wait objects on the stack
  int waitsBelow_ = 0;      // number of Wait objects below the topmost Modal
  int modal_ = 0;           // number of Modal objects on the stack
  unsigned abandoned_ = 0;  // number of calls of AbandonWaits
  Task next_;
  std::deque<Task> quiet_;

  std::mutex threadsMutex_;
  std::deque<Task> fromThreads_;  // guarded by threadsMutex_
};

/// Pumps events until the time-of-day clock has advanced by `seconds`.
///
/// Intentional: the seconds since midnight are read in single precision, and the restart at midnight is not
/// handled. A pause that runs over midnight therefore does not end by itself. It throws WaitAbandoned when it
/// is one minute overdue on the monotonic clock, so that it cannot block the program forever.
void Pause(EventLoop& loop, double seconds);

/// Like Pause, but a pause over midnight ends when it is one minute overdue, and the caller continues. For
/// exchanges with the modem that must not stop halfway.
void PauseThrough(EventLoop& loop, double seconds);

/// Runs everything that is due, once. A wait that can be abandoned (see EventLoop::Wait).
void LetEventsRun(EventLoop& loop);

/// Pause(0.1).
void PauseShort(EventLoop& loop);

}  // namespace corvex
