#include "devices/modSecure.h"

#include <string>

#include "base/Text.h"

namespace corvex {

namespace {

/// Keeps the end of a long reply only. A word of the reply is never longer.
void Append(std::string& reply, const std::string& taken) {
  constexpr std::size_t kMost = 65536;
  reply += taken;
  if (reply.size() > kMost) reply.erase(0, reply.size() - kMost);
}

}  // namespace

bool OwnerAccess::ReadOwnerLevel() {
  constexpr std::string_view kCommand = "gtlevel\r\n";
  constexpr int kAgain = 10;
  constexpr int kLast = 20;
  std::string reply;
  for (int count = 1;; ++count) {
    output_.Write(kCommand);
    Append(reply, received_.TakeRx());
    PauseThrough(loop_, 0.05);
    if (count == kAgain) output_.Write(kCommand);
    const std::string upper = UpperCase(reply);
    if (Contains(upper, "USER") || Contains(upper, "OWNER") || count > kLast) break;
  }
  levelKnown_ = true;
  ownerLevel_ = Contains(reply, "OWNER");  // intentional: only in upper case
  return ownerLevel_;
}

bool OwnerAccess::TryOwnerPassword(std::string_view password) {
  constexpr int kAgain = 5;
  constexpr int kLast = 10;
  const std::string command = "trypwd " + std::string(password) + std::string(kCrLf);
  std::string reply;
  for (int count = 1;; ++count) {
    output_.Write(kCrLf);
    LetEventsRun(loop_);
    output_.Write(command);
    PauseThrough(loop_, 0.1);
    Append(reply, received_.TakeRx());
    if (count == kAgain) {
      output_.Write(command);
      PauseThrough(loop_, 0.1);
    }
    ownerLevel_ = Contains(UpperCase(reply), "PWDOK");
    if (ownerLevel_ || count > kLast) return ownerLevel_;
  }
}

}  // namespace corvex
