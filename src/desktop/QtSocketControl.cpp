#include "desktop/QtSocketControl.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QTimer>

#include "desktop/look/QtText.h"

namespace corvex {

namespace {

constexpr qint64 kReadBuffer = 256 * 1024;
// Limits the send queue if the peer does not read.
constexpr qint64 kWriteBuffer = 4 * 1024 * 1024;
constexpr std::chrono::seconds kFarewell(2);

}  // namespace

QtSocketControl::QtSocketControl(EventLoop& loop) : events_(loop) {}

SocketControl::State QtSocketControl::GetState() const {
  if (failed_) return kError;
  if (peerClosed_) return kPeerClosing;
  if (socket_ == nullptr) return kClosed;
  switch (socket_->state()) {
    case QAbstractSocket::HostLookupState:
      return kResolving;
    case QAbstractSocket::ConnectedState:
      return kConnected;
    case QAbstractSocket::ClosingState:
      return kPeerClosing;
    default:
      return kConnecting;
  }
}

bool QtSocketControl::Connect(const std::string& host, std::int32_t port) {
  if (GetState() != kClosed || host.empty() || port < 1 || port > 65535) return false;
  host_ = host;
  port_ = port;
  socket_ = new QTcpSocket(this);
  socket_->setProxy(QNetworkProxy::NoProxy);  // the unit is on the ship's LAN
  socket_->setReadBufferSize(kReadBuffer);
  connect(socket_, &QTcpSocket::connected, this, &QtSocketControl::Connected);
  connect(socket_, &QTcpSocket::readyRead, this, &QtSocketControl::Announce);
  connect(socket_, &QTcpSocket::errorOccurred, this, &QtSocketControl::Failed);
  socket_->connectToHost(ToQt(host), static_cast<quint16>(port));
  return true;
}

void QtSocketControl::Connected() {
  socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  // Detects a peer that vanished without closing the connection, after the system's keep-alive time. The
  // program's watchdog is faster.
  socket_->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
}

void QtSocketControl::Close() {
  events_.Cut();
  failed_ = false;
  peerClosed_ = false;
  QTcpSocket* const old = std::exchange(socket_, nullptr);
  if (old == nullptr) return;
  disconnect(old, nullptr, this, nullptr);
  if (old->state() != QAbstractSocket::ConnectedState) {
    old->abort();
    old->deleteLater();
    return;
  }
  // Closing a socket with unread bytes would reset the connection and lose sent data. So read and discard
  // them.
  old->setReadBufferSize(0);
  connect(old, &QTcpSocket::readyRead, old, [old] { old->skip(old->bytesAvailable()); });
  connect(old, &QTcpSocket::disconnected, old, &QObject::deleteLater);
  QTimer::singleShot(kFarewell, old, &QObject::deleteLater);
  old->disconnectFromHost();
}

void QtSocketControl::SendData(std::string_view bytes) {
  if (GetState() != kConnected || bytes.empty() ||
      socket_->bytesToWrite() + static_cast<qint64>(bytes.size()) > kWriteBuffer) {
    return;
  }
  socket_->write(bytes.data(), static_cast<qint64>(bytes.size()));
}

std::string QtSocketControl::GetData() {
  return socket_ == nullptr ? std::string() : socket_->readAll().toStdString();
}

std::string QtSocketControl::LocalAddress() const {
  if (socket_ == nullptr) return {};
  const QHostAddress address = socket_->localAddress();
  bool isIpv4 = false;
  const QHostAddress ipv4(address.toIPv4Address(&isIpv4));  // also an IPv4-mapped IPv6 address
  return FromQt((isIpv4 ? ipv4 : address).toString());
}

void QtSocketControl::Announce() {
  events_.PostArrival(
      [this] {
        if (onDataArrival) onDataArrival();
      },
      [this] { return socket_ != nullptr && socket_->bytesAvailable() >= kReadBuffer; });
}

void QtSocketControl::Failed(QAbstractSocket::SocketError error) {
  if (failed_ || peerClosed_) return;
  if (socket_->bytesAvailable() > 0) Announce();
  if (error != QAbstractSocket::RemoteHostClosedError) {
    failed_ = true;
    return;
  }
  peerClosed_ = true;
  events_.Post([this] {
    if (onClose) onClose();
  });
}

}  // namespace corvex
