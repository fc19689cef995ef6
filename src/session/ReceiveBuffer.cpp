#include "session/ReceiveBuffer.h"

namespace corvex {

std::string ReceiveBuffer::TakeRx() {
  std::string taken;
  taken.swap(text_);
  TellRoom(taken.size());
  return taken;
}

void ReceiveBuffer::TakeRxInto(std::string& text) {
  const std::size_t before = text_.size();
  if (text.empty()) {
    text.swap(text_);  // the two keep each other's storage, so that a steady stream allocates nothing
  } else {
    text.append(text_);
    text_.clear();
  }
  TellRoom(before);
}

std::uint8_t ReceiveBuffer::ReadByte() {
  while (!RxAvailable()) loop_.Pump();
  const auto byte = static_cast<std::uint8_t>(text_.front());
  const std::size_t before = text_.size();
  text_.erase(0, 1);
  TellRoom(before);
  return byte;
}

void ReceiveBuffer::TellRoom(std::size_t before) {
  if (before >= kCapacity && HasRoom() && onRoom) onRoom();
}

}  // namespace corvex
