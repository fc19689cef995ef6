#pragma once

#include <array>
#include <asio/buffer.hpp>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace corvex::simulation::host {

/// An open stream of Asio's, of which the reader may be slow: what it does not take at once waits, within a
/// limit. It reads and writes from its making until its end, when the stream is closed.
template <typename Stream>
class Connection {
 public:
  /// What waits for a slow reader at the most. A text that does not fit is lost as a whole.
  static constexpr std::size_t kLimit = std::size_t{64} * 1024;

  /// `onGone` is called once when the other side has gone, and may end this object's life.
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

  /// Takes what has come, and finds out whether the other side has gone, before Asio tells of it.
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
    std::size_t writing = 0;  ///< How much of `waiting` is being written.
    bool ended = false;       ///< The connection's life, or the other side's.
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
    // A copy, as more may come to wait meanwhile.
    const auto piece = std::make_shared<std::string>(state->waiting);
    state->writing = piece->size();
    state->stream.async_write_some(asio::buffer(*piece),
                                   [state, piece](std::error_code error, std::size_t count) {
                                     state->writing = 0;
                                     // That the other side has gone is told by the reading.
                                     if (state->ended || error) return;
                                     state->waiting.erase(0, count);
                                     Write(state);
                                   });
  }

  StatePtr state_;
};

}  // namespace corvex::simulation::host
