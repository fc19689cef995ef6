#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace corvex::simulation::host {

/// The place where a PC's program reaches the unit. One at a time can.
class Port {
 public:
  virtual ~Port() = default;

  /// False with a reason in `error` if it is not to be had.
  virtual bool Open(std::string& error) = 0;
  /// To the PC; dropped while there is none.
  virtual void Send(std::string_view bytes) = 0;
  virtual void HangUp() = 0;

  std::function<void(std::string_view)> onBytes;
  std::function<void()> onUp;
  std::function<void()> onDown;
  /// A line for whoever started the program, such as where the port is to be found.
  std::function<void(const std::string&)> onNotice;
};

}  // namespace corvex::simulation::host
