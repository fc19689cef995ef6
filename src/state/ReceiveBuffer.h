#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/EventLoop.h"

namespace corvex {

/// Where the link and those who wait for the modem meet: received bytes, one character each, appended by the
/// receive events and taken from the front.
///
/// It is bounded: a receive event that dispatches nothing leaves its bytes in the transport while HasRoom is
/// false, and `onRoom` is called when they can be fetched. So no byte is lost, and it holds kCapacity and two
/// events' bytes at the most.
class ReceiveBuffer {
 public:
  static constexpr std::size_t kCapacity = 16u << 20;

  explicit ReceiveBuffer(EventLoop& loop) : loop_(loop) {}

  void ClearRx() { TakeRx(); }
  void AppendRx(std::string_view text) { text_.append(text); }
  void AppendRxBytes(std::string_view bytes) { AppendRx(bytes); }
  /// The whole buffer, which is empty afterwards.
  std::string TakeRx();
  /// Moves the whole buffer to the end of `text`.
  void TakeRxInto(std::string& text);
  void DiscardRx() { TakeRx(); }
  bool RxAvailable() const { return Held() > 0; }
  bool HasRoom() const { return Held() < kCapacity; }

  /// Takes the first byte, and waits for it without any limit of time; a silent modem leaves it waiting for
  /// ever, so that callers see to their own way out. That is meant. Another passage between modes ends the
  /// wait.
  std::uint8_t ReadByte();

  std::function<void()> onRoom;

 private:
  std::size_t Held() const { return text_.size() - read_; }
  void DropRead();
  void TellRoom(std::size_t before);

  EventLoop& loop_;
  std::string text_;      ///< What has been received, and
  std::size_t read_ = 0;  ///< how much of its front ReadByte has taken: never more than what is left.
};

}  // namespace corvex
