#include "host/TcpPort.h"

#ifndef _WIN32
#include <netinet/tcp.h>
#endif

#include <utility>

namespace corvex::simulation::host {
namespace {

using asio::ip::tcp;

template <typename Socket>
void SetOption(Socket& socket, int level, int name, int value) {
  // Errors are ignored, because the connection works without these options.
  (void)setsockopt(socket.native_handle(), level, name, reinterpret_cast<const char*>(&value), sizeof value);
}

/// Sends short texts without delay, and detects a peer that has vanished.
void SetOptions(tcp::socket& socket) {
  SetOption(socket, IPPROTO_TCP, TCP_NODELAY, 1);
  SetOption(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
#ifdef TCP_KEEPIDLE
  SetOption(socket, IPPROTO_TCP, TCP_KEEPIDLE, 10);
  SetOption(socket, IPPROTO_TCP, TCP_KEEPINTVL, 5);
  SetOption(socket, IPPROTO_TCP, TCP_KEEPCNT, 3);
#endif
#ifdef TCP_USER_TIMEOUT
  SetOption(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, 20000);
#endif
}

/// Makes bind fail if another program listens on the address, but not if only old connections still use it.
void SetOptions(tcp::acceptor& listener) {
#ifdef _WIN32
  SetOption(listener, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, 1);
#else
  SetOption(listener, SOL_SOCKET, SO_REUSEADDR, 1);
#endif
}

}  // namespace

bool TcpPort::Open(std::string& error) {
  const auto address = allAddresses_ ? asio::ip::address_v4::any() : asio::ip::address_v4::loopback();
  std::error_code failed;
  listener_.open(tcp::v4(), failed);
  if (!failed) SetOptions(listener_);
  if (!failed) listener_.bind({address, port_}, failed);
  if (!failed) listener_.listen(4, failed);
  if (failed) {
    constexpr std::uint16_t kFirstFreePort = 1024;
    error = "port " + std::to_string(port_) + ": " + failed.message();
    if (failed == asio::error::access_denied && port_ < kFirstFreePort) {
      error +=
          "; ports below 1024 need root rights: use sudo, or run once "
          "\"sudo setcap cap_net_bind_service=+ep FILE\" with this program's file";
    }
    return false;
  }
  AwaitClient();
  onNotice("listening on " + address.to_string() + ':' +
           std::to_string(listener_.local_endpoint(failed).port()));
  return true;
}

void TcpPort::Send(std::string_view bytes) {
  if (client_ != nullptr) client_->Send(bytes);
}

void TcpPort::HangUp() {
  // Posted, because the call may come from within the connection.
  loop_.Post([this] {
    if (std::exchange(client_, nullptr) != nullptr) onDown();
  });
}

void TcpPort::AwaitClient() {
  listener_.async_accept([this](std::error_code error, tcp::socket socket) {
    if (error == asio::error::operation_aborted) return;
    if (!error) TakeClient(std::move(socket));
    AwaitClient();
  });
}

void TcpPort::TakeClient(tcp::socket socket) {
  // The new client may be the old one, whose disconnect has not been processed yet. Look processes it.
  if (client_ != nullptr) client_->Look();
  SetOptions(socket);
  if (client_ != nullptr) {
    std::error_code ignored;
    socket.non_blocking(true, ignored);
    socket.write_some(asio::buffer(std::string_view("\r\nBUSY\r\n")), ignored);
    return;
  }
  client_ = std::make_unique<Connection<tcp::socket>>(
      std::move(socket), [this](std::string_view bytes) { onBytes(bytes); },
      [this] {
        client_.reset();
        onDown();
      });
  onUp();
}

}  // namespace corvex::simulation::host
