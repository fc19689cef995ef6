#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "settings/INIFuncs.h"

// The login on the ERB unit that stands in front of the modems (MUBs): a login prompt, a password prompt, a
// command prompt, and the command "modem" with a number, which connects the session through. There is no
// option negotiation; all of it is plain text matching on prompts that the settings name.

namespace corvex {

enum class LoginState : std::int32_t {
  Idle = 0,  ///< Waiting for a prompt.
  UserSent = 1,
  PasswordSent = 2,
  MubRequested = 3,  ///< The command that connects to the MUB has been sent.
  Connected = 4,     ///< The link is ready for the modem's own traffic.
  Refused = 5,       ///< The login cannot go on.
};

/// The prompt-driven state machine of the login. It is fed with whatever arrives.
class TelnetLogin {
 public:
  /// What it does to the link and asks of the user.
  struct Actions {
    std::function<void(std::string_view)> writeText;
    std::function<void(std::string_view)> writePassword;  ///< The same for the line with the password.
    std::function<void()> sendCancel;
    std::function<std::optional<std::string>(std::string_view prompt, std::string_view title)> ask;
  };

  /// More than this of text without any prompt in it is cut from its front.
  static constexpr std::size_t kBufferBound = 65536;

  TelnetLogin(SettingsStore& settings, Actions actions) : settings_(settings), actions_(std::move(actions)) {}

  void ResetLogin();
  bool LoginComplete() const { return state_ == LoginState::Connected; }
  bool LoginFailed() const { return state_ == LoginState::Refused; }
  LoginState state() const { return state_; }
  /// The user is being asked for the password.
  bool Asking() const { return asking_; }
  /// The route needs no login, or it is over.
  void SetConnected() { state_ = LoginState::Connected; }

  /// Takes what has arrived; an empty text does nothing at all.
  void LoginStep(std::string_view text);

 private:
  bool Holds(const std::string& prompt) const;
  void AskForPassword();

  SettingsStore& settings_;
  Actions actions_;
  LoginState state_ = LoginState::Idle;
  unsigned login_ = 0;  // counts the logins that have begun
  bool asking_ = false;
  std::string loginBuffer_;  // upper case; everything since the last match
};

}  // namespace corvex
