#pragma once

#include <QObject>
#include <QTcpSocket>
#include <string>

#include "platform/TransportEvents.h"
#include "platform/Transports.h"

namespace corvex {

/// The TCP connection, implemented with one QTcpSocket per connection. After Close, the socket takes up to
/// two seconds to deliver the data that was passed to SendData, and then deletes itself.
class QtSocketControl : public QObject, public SocketControl {
 public:
  explicit QtSocketControl(EventLoop& loop);

  State GetState() const override;
  bool Connect(const std::string& host, std::int32_t port) override;
  void Close() override;
  void SendData(std::string_view bytes) override;
  std::string GetData() override;
  std::string RemoteHost() const override { return host_; }
  std::int32_t RemotePort() const override { return port_; }
  std::string LocalAddress() const override;

 private:
  void Connected();
  void Announce();
  void Failed(QAbstractSocket::SocketError error);

  TransportEvents events_;
  QTcpSocket* socket_ = nullptr;  ///< Socket of the current connection, kept after a failure until Close.
  bool failed_ = false;
  bool peerClosed_ = false;
  std::string host_;
  std::int32_t port_ = 0;
};

}  // namespace corvex
