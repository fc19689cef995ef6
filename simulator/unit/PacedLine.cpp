#include "unit/PacedLine.h"

#include <algorithm>

namespace corvex::simulation {
namespace {

constexpr int kBitsPerByte = 10;
constexpr int kPiecesPerSecond = 100;

}  // namespace

void PacedLine::Send(std::string_view bytes) {
  if (bitsPerSecond_ <= 0) return send_(bytes);
  if (waiting_.size() + bytes.size() > kLimit) return;
  waiting_ += bytes;
  if (timer_.Running() || waiting_.empty()) return;
  free_ = std::max(free_, loop_.Now());
  Schedule();
}

void PacedLine::Reset() {
  timer_.Stop();
  waiting_.clear();
}

void PacedLine::Schedule() {
  const int whole = std::max(1, bitsPerSecond_ / kBitsPerByte / kPiecesPerSecond);
  const std::size_t length = std::min(waiting_.size(), static_cast<std::size_t>(whole));
  const double seconds = static_cast<double>(length * kBitsPerByte) / bitsPerSecond_;
  free_ += std::chrono::duration_cast<EventLoop::Time>(std::chrono::duration<double>(seconds));
  timer_.Start(free_ - loop_.Now(), [this, length] {
    const std::string piece = waiting_.substr(0, length);
    waiting_.erase(0, length);
    if (!waiting_.empty()) Schedule();
    send_(piece);
  });
}

}  // namespace corvex::simulation
