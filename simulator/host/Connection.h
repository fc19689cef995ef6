#pragma once

#include <array>
#include <asio/buffer.hpp>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace corvex::simulation::host {

/// An open Asio stream whose reader may be slow. Bytes that the stream does not accept immediately are queued
/// up to a limit. The constructor starts reading. The destructor closes the stream.
template <typename Stream>
class Connection {
 public:
  /// The limit of the queue in bytes. A text that does not fit is dropped as a whole.
  static constexpr std::size_t kLimit = std::size_t{64} * 1024;

  /// `onGone` is called once, when the other side has disconnected. It may destroy this object.
  Connection(Stream stream, std::function<void(std::string_view)> onBytes, std::function<void()> onGone)
      : state_(std::make_shared<State>(std::move(stream), std::move(onBytes), std::move(onGone))) {
    std::error_code ignored;
    state_->stream.non_blocking(true, ignored);
    Read(state_);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() {
    state_->ended = true;
    std::error_code ignored;
    state_->stream.close(ignored);
  }

  void Send(std::string_view bytes) {
    if (state_->waiting.size() + bytes.size() > kLimit) return;
    state_->waiting += bytes;
    Write(state_);
  }

  /// Reads what has arrived, and detects a disconnect before Asio reports it.
  void Look() {
    const auto state = state_;
    std::error_code error;
    const std::size_t count = state->stream.read_some(asio::buffer(state->bytes), error);
    Take(state, error == asio::error::would_block ? std::error_code() : error, count);
  }

 private:
  struct State {
    State(Stream opened, std::function<void(std::string_view)> bytesTo, std::function<void()> gone)
        : stream(std::move(opened)), onBytes(std::move(bytesTo)), onGone(std::move(gone)) {}

    Stream stream;
    std::function<void(std::string_view)> onBytes;
    std::function<void()> onGone;
    std::array<char, 4096> bytes{};
    std::string waiting;
    std::size_t writing = 0;  ///< Number of bytes of `waiting` that are being written.
    bool ended = false;       ///< This object was destroyed, or the other side has disconnected.
  };
  using StatePtr = std::shared_ptr<State>;

  static void Read(const StatePtr& state) {
    state->stream.async_read_some(asio::buffer(state->bytes),
                                  [state](std::error_code error, std::size_t count) {
                                    Take(state, error, count);
                                    if (!state->ended) Read(state);
                                  });
  }

  static void Take(const StatePtr& state, std::error_code error, std::size_t count) {
    if (state->ended) return;
    if (error) {
      state->ended = true;
      return state->onGone();
    }
    if (count > 0) state->onBytes({state->bytes.data(), count});
  }

  static void Write(const StatePtr& state) {
    if (state->writing > 0 || state->waiting.empty()) return;
    // Write from a copy, because Send may extend `waiting` during the write.
    const auto piece = std::make_shared<std::string>(state->waiting);
    state->writing = piece->size();
    state->stream.async_write_some(asio::buffer(*piece),
                                   [state, piece](std::error_code error, std::size_t count) {
                                     state->writing = 0;
                                     // A disconnect is reported by the read.
                                     if (state->ended || error) return;
                                     state->waiting.erase(0, count);
                                     Write(state);
                                   });
  }

  StatePtr state_;
};

}  // namespace corvex::simulation::host
