#pragma once

#include <string_view>

#include "devices/SessionOutput.h"
#include "platform/EventLoop.h"
#include "state/ReceiveBuffer.h"

namespace corvex {

/// The access level of the user at the terminal. Changes of the configuration need the owner level. The
/// program knows no password: it sends what the user types.
class OwnerAccess {
 public:
  OwnerAccess(EventLoop& loop, SessionOutput& output, ReceiveBuffer& received)
      : loop_(loop), output_(output), received_(received) {}

  /// Asks the terminal for the level. Returns true if the terminal reports the owner level, false for any
  /// other reply and if no reply comes.
  bool ReadOwnerLevel();
  /// Sends a password. Returns whether the terminal accepts it. Intentional: a terminal that answers late
  /// gets the password several times.
  bool TryOwnerPassword(std::string_view password);

  bool levelKnown() const { return levelKnown_; }
  bool ownerLevel() const { return ownerLevel_; }

 private:
  EventLoop& loop_;
  SessionOutput& output_;
  ReceiveBuffer& received_;
  bool levelKnown_ = false;
  bool ownerLevel_ = false;
};

}  // namespace corvex
