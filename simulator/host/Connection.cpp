#include "host/Connection.h"

#include <utility>

namespace corvex::simulation::host {

Connection::Connection(HostLoop& loop, Handle handle, std::function<void(std::string_view)> onBytes,
                       std::function<void()> onGone)
    : loop_(loop), handle_(handle), onBytes_(std::move(onBytes)), onGone_(std::move(onGone)) {
  Watch();
}

Connection::~Connection() {
  loop_.Unwatch(handle_);
  if (owned_) Close(handle_);
}

void Connection::Send(std::string_view bytes) {
  if (waiting_.size() + bytes.size() > kLimit) return;
  const bool waited = !waiting_.empty();
  waiting_ += bytes;
  if (waited) return;
  // That the other side has gone is told by the next Serve, which finds it at reading.
  waiting_.erase(0, Write(handle_, waiting_).value_or(0));
  if (!waiting_.empty()) Watch();
}

void Connection::Serve() {
  const auto written = waiting_.empty() ? std::optional<std::size_t>(0) : Write(handle_, waiting_);
  if (written) {
    const bool waited = !waiting_.empty();
    waiting_.erase(0, *written);
    if (waited && waiting_.empty()) Watch();
  }
  const auto bytes = written ? Read(handle_) : std::nullopt;
  if (!bytes) {
    const auto onGone = onGone_;
    return onGone();
  }
  if (!bytes->empty()) onBytes_(*bytes);
}

void Connection::Watch() {
  loop_.Watch(handle_, !waiting_.empty(), [this] { Serve(); });
}

}  // namespace corvex::simulation::host
