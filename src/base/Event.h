#pragma once

#include <functional>
#include <utility>

namespace corvex {

/// An event with at most one handler. Raising an event without a handler does nothing.
template <typename... Args>
class Event {
 public:
  using Handler = std::function<void(Args...)>;
  Event() = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  Event& operator=(Handler handler) {
    handler_ = std::move(handler);
    return *this;
  }
  /// True if a handler is set.
  explicit operator bool() const { return static_cast<bool>(handler_); }
  void operator()(Args... args) const {
    if (handler_) handler_(std::forward<Args>(args)...);
  }

 private:
  Handler handler_;
};

}  // namespace corvex
