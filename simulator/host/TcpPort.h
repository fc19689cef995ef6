#pragma once

#include <asio/ip/tcp.hpp>
#include <cstdint>
#include <memory>

#include "host/Connection.h"
#include "host/HostLoop.h"
#include "host/Port.h"

namespace corvex::simulation::host {

class TcpPort : public Port {
 public:
  /// `port` 0 selects a free port, which onNotice reports.
  TcpPort(HostLoop& loop, std::uint16_t port, bool allAddresses)
      : loop_(loop), port_(port), allAddresses_(allAddresses), listener_(loop.Io()) {}

  bool Open(std::string& error) override;
  void Send(std::string_view bytes) override;
  void HangUp() override;

 private:
  void AwaitClient();
  void TakeClient(asio::ip::tcp::socket socket);

  HostLoop& loop_;
  std::uint16_t port_;
  bool allAddresses_;
  asio::ip::tcp::acceptor listener_;
  std::unique_ptr<Connection<asio::ip::tcp::socket>> client_;
};

}  // namespace corvex::simulation::host
