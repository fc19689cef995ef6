#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "host/HostLoop.h"

namespace corvex::simulation::host {

/// An open handle of which the reader may be slow: what it does not take at once waits, within a limit.
class Connection {
 public:
  /// What waits for a slow reader at the most. A text that does not fit is lost as a whole.
  static constexpr std::size_t kLimit = std::size_t{64} * 1024;

  Connection(HostLoop& loop, Handle handle, std::function<void(std::string_view)> onBytes,
             std::function<void()> onGone);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  /// The handle stays open when this object ends.
  void Release() { owned_ = false; }

  void Send(std::string_view bytes);
  /// Takes what has come and sends what waits, as far as it goes now. `onGone` may end this object's life.
  void Serve();

 private:
  void Watch();

  HostLoop& loop_;
  Handle handle_;
  std::function<void(std::string_view)> onBytes_;
  std::function<void()> onGone_;
  std::string waiting_;
  bool owned_ = true;
};

}  // namespace corvex::simulation::host
