#pragma once

#include <cstdint>
#include <memory>

#include "host/Connection.h"
#include "host/Port.h"

namespace corvex::simulation::host {

class TcpPort : public Port {
 public:
  /// `port` 0 takes a free one, which is told by onNotice.
  TcpPort(HostLoop& loop, std::uint16_t port, bool allAddresses)
      : loop_(loop), port_(port), allAddresses_(allAddresses) {}
  ~TcpPort() override;

  bool Open(std::string& error) override;
  void Send(std::string_view bytes) override;
  void HangUp() override;

 private:
  void TakeClient();

  HostLoop& loop_;
  std::uint16_t port_;
  bool allAddresses_;
  Handle listener_ = kNoHandle;
  std::unique_ptr<Connection> client_;
};

}  // namespace corvex::simulation::host
