#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace corvex::simulation::host {

/// A port of the unit. One program on a PC at a time can connect to it.
class Port {
 public:
  virtual ~Port() = default;

  /// Opens the port. Returns false if it is not available, and sets `error` to the reason.
  virtual bool Open(std::string& error) = 0;
  /// Sends bytes to the PC. They are dropped if none is connected.
  virtual void Send(std::string_view bytes) = 0;
  virtual void HangUp() = 0;

  std::function<void(std::string_view)> onBytes;
  std::function<void()> onUp;
  std::function<void()> onDown;
  /// A message for the user who started the program, such as the port's address.
  std::function<void(const std::string&)> onNotice;
};

}  // namespace corvex::simulation::host
