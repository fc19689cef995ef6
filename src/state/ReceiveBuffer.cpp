#include "state/ReceiveBuffer.h"

namespace corvex {

std::string ReceiveBuffer::TakeRx() {
  std::string taken;
  TakeRxInto(taken);
  return taken;
}

void ReceiveBuffer::TakeRxInto(std::string& text) {
  const std::size_t before = Held();
  if (text.empty() && read_ == 0) {
    text.swap(text_);  // reuses both allocations, so a steady stream allocates no memory
  } else {
    text.append(text_.data() + read_, before);
    text_.clear();
    read_ = 0;
  }
  TellRoom(before);
}

std::uint8_t ReceiveBuffer::ReadByte() {
  for (EventLoop::Wait wait(loop_); !RxAvailable();) wait.Pump();
  const std::size_t before = Held();
  const auto byte = static_cast<std::uint8_t>(text_[read_++]);
  DropRead();
  TellRoom(before);
  return byte;
}

void ReceiveBuffer::DropRead() {
  // erase() moves the remaining bytes to the front. Wait until at least half of the bytes have been read.
  if (read_ < Held()) return;
  text_.erase(0, read_);
  read_ = 0;
}

void ReceiveBuffer::TellRoom(std::size_t before) {
  if (before >= kCapacity && HasRoom() && onRoom) onRoom();
}

}  // namespace corvex
