#pragma once

#include <functional>
#include <utility>

namespace corvex {

/// A slot that the logic fills; calling an empty one does nothing.
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
  /// Whether there is anything to call.
  explicit operator bool() const { return static_cast<bool>(handler_); }
  void operator()(Args... args) const {
    if (handler_) handler_(std::forward<Args>(args)...);
  }

 private:
  Handler handler_;
};

}  // namespace corvex
