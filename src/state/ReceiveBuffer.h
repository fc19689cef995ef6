#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/EventLoop.h"

namespace corvex {

/// Queue of received bytes between the link and the code that waits for the modem. Receive events append
/// bytes, one character each; readers take them from the front.
///
/// The size is bounded. While HasRoom returns false, a receive event that does not dispatch its bytes leaves
/// them in the transport. `onRoom` is called when they can be fetched. No byte is lost, and the buffer never
/// holds more than kCapacity plus the bytes of two events.
class ReceiveBuffer {
 public:
  static constexpr std::size_t kCapacity = 16u << 20;  ///< Bytes.

  explicit ReceiveBuffer(EventLoop& loop) : loop_(loop) {}

  void ClearRx() { TakeRx(); }
  void AppendRx(std::string_view text) { text_.append(text); }
  void AppendRxBytes(std::string_view bytes) { AppendRx(bytes); }
  /// Removes and returns the whole content.
  std::string TakeRx();
  /// Removes the whole content and appends it to `text`.
  void TakeRxInto(std::string& text);
  void DiscardRx() { TakeRx(); }
  bool RxAvailable() const { return Held() > 0; }
  bool HasRoom() const { return Held() < kCapacity; }

  /// Removes and returns the first byte. Waits for a byte if the buffer is empty. There is
  /// intentionally no timeout: callers must handle a silent modem themselves. A mode change ends the wait
  /// (see EventLoop::Wait).
  std::uint8_t ReadByte();

  /// Called when a full buffer has room again.
  std::function<void()> onRoom;

 private:
  std::size_t Held() const { return text_.size() - read_; }
  void DropRead();
  void TellRoom(std::size_t before);

  EventLoop& loop_;
  std::string text_;      ///< Received bytes.
  std::size_t read_ = 0;  ///< Bytes at the front that ReadByte has taken. At most half of `text_`.
};

}  // namespace corvex
