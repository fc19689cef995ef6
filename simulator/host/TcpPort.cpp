#include "host/TcpPort.h"

#include <utility>

namespace corvex::simulation::host {

TcpPort::~TcpPort() {
  if (listener_ == kNoHandle) return;
  loop_.Unwatch(listener_);
  Close(listener_);
}

bool TcpPort::Open(std::string& error) {
  listener_ = Listen(port_, allAddresses_, error);
  if (listener_ == kNoHandle) return false;
  loop_.Watch(listener_, false, [this] { TakeClient(); });
  onNotice(std::string("listening on ") + (allAddresses_ ? "0.0.0.0:" : "127.0.0.1:") +
           std::to_string(LocalPort(listener_)));
  return true;
}

void TcpPort::Send(std::string_view bytes) {
  if (client_ != nullptr) client_->Send(bytes);
}

void TcpPort::HangUp() {
  // Not at once: the call may come from within the connection.
  loop_.Post([this] {
    if (std::exchange(client_, nullptr) != nullptr) onDown();
  });
}

void TcpPort::TakeClient() {
  // The client may have gone and come again in one go: its going is seen first.
  if (client_ != nullptr) client_->Serve();
  const Handle handle = Accept(listener_);
  if (handle == kNoHandle) return;
  if (client_ != nullptr) {
    Write(handle, "\r\nBUSY\r\n");
    Close(handle);
    return;
  }
  client_ = std::make_unique<Connection>(
      loop_, handle, [this](std::string_view bytes) { onBytes(bytes); },
      [this] {
        client_.reset();
        onDown();
      });
  onUp();
}

}  // namespace corvex::simulation::host
