#pragma once

#include <asio/posix/stream_descriptor.hpp>
#include <memory>
#include <string>

#include "host/Connection.h"
#include "host/HostLoop.h"
#include "host/Port.h"
#include "unit/Timer.h"

namespace corvex::simulation::host {

/// A pseudo terminal, which the PC's program opens like a serial port. Not available on Windows.
class PtyPort : public Port {
 public:
  /// `link`: the path of a symbolic link that points to the terminal while the port exists; empty for none.
  PtyPort(HostLoop& loop, std::string link) : loop_(loop), link_(std::move(link)), lookOut_(loop) {}
  ~PtyPort() override;

  bool Open(std::string& error) override;
  void Send(std::string_view bytes) override;
  /// Hangs up by closing the pseudo terminal, then opens a new one.
  void HangUp() override;

 private:
  void LookOut();
  void Release();

  HostLoop& loop_;
  std::string link_;
  int handle_ = -1;
  std::string name_;  ///< Name of the end that the PC's program opens.
  std::unique_ptr<Connection<asio::posix::stream_descriptor>> user_;
  Timer lookOut_;
};

}  // namespace corvex::simulation::host
