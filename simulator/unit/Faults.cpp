#include "unit/Faults.h"

#include <algorithm>
#include <utility>

namespace corvex::simulation {
namespace {

constexpr EventLoop::Time kBetweenPieces = std::chrono::milliseconds(1);
constexpr std::size_t kLongestPiece = 7;

}  // namespace

FaultyLine::FaultyLine(EventLoop& loop, Faults faults, std::function<void(std::string_view)> send,
                       std::function<void()> hangUp)
    : loop_(loop),
      faults_(faults),
      send_(std::move(send)),
      hangUp_(std::move(hangUp)),
      random_(faults.seed),
      timer_(loop) {}

void FaultyLine::Send(std::string_view bytes) {
  if (faults_.silent || hungUp_) return;
  std::string altered;
  for (char c : bytes) {
    if (Happens(faults_.drop)) continue;
    if (Happens(faults_.garble)) c = static_cast<char>(c ^ (1 << random_() % 8));
    altered += c;
  }
  if (faults_.cut || faults_.late > EventLoop::Time::zero() || !pieces_.empty()) {
    Queue(altered);
  } else {
    Deliver(altered);
  }
}

void FaultyLine::SetFaults(Faults faults) {
  faults_ = faults;
  random_.seed(faults.seed);
}

void FaultyLine::Reset() {
  timer_.Stop();
  pieces_.clear();
  waiting_ = 0;
  delivered_ = 0;
  hungUp_ = false;
}

bool FaultyLine::Happens(double share) {
  // The standard distributions give different numbers with each library.
  return share > 0 && static_cast<double>(random_()) < share * 4294967296.0;
}

void FaultyLine::Queue(std::string_view bytes) {
  if (waiting_ + bytes.size() > kLimit) return;
  waiting_ += bytes.size();
  const EventLoop::Time earliest = loop_.Now() + faults_.late;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t length = faults_.cut ? 1 + random_() % kLongestPiece : bytes.size();
    lastDue_ = std::max(earliest, faults_.cut ? lastDue_ + kBetweenPieces : lastDue_);
    pieces_.push_back({lastDue_, std::string(bytes.substr(at, length))});
    at += length;
  }
  if (!timer_.Running()) SendDue();
}

void FaultyLine::SendDue() {
  while (!pieces_.empty() && pieces_.front().due <= loop_.Now()) {
    const Piece piece = std::move(pieces_.front());
    pieces_.pop_front();
    waiting_ -= piece.bytes.size();
    Deliver(piece.bytes);
  }
  if (!pieces_.empty()) timer_.Start(pieces_.front().due - loop_.Now(), [this] { SendDue(); });
}

void FaultyLine::Deliver(std::string_view bytes) {
  if (hungUp_) return;
  if (faults_.hangUpAfter) {
    const std::uint64_t rest = *faults_.hangUpAfter - std::min(delivered_, *faults_.hangUpAfter);
    hungUp_ = bytes.size() >= rest;
    bytes = bytes.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(rest, bytes.size())));
  }
  delivered_ += bytes.size();
  if (!bytes.empty()) send_(bytes);
  if (hungUp_) hangUp_();
}

}  // namespace corvex::simulation
