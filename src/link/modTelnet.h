#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "settings/INIFuncs.h"

// The login on the ERB unit, which gives access to up to four modems (MUBs). The ERB unit shows a login
// prompt, a password prompt and a command prompt. The command "modem" with a number then connects the session
// to that modem. Telnet options are not negotiated. Prompts are recognised by their texts in the settings.

namespace corvex {

enum class LoginState : std::int32_t {
  Idle = 0,  ///< Waiting for a prompt.
  UserSent = 1,
  PasswordSent = 2,
  MubRequested = 3,  ///< The command that connects to the MUB has been sent.
  Connected = 4,     ///< The link is ready for the modem's own traffic.
  Refused = 5,       ///< The login has failed.
};

/// State machine of the login, driven by received text.
class TelnetLogin {
 public:
  /// Operations of the login: three that send on the link, and one that asks the user for the password.
  struct Actions {
    std::function<void(std::string_view)> writeText;
    std::function<void(std::string_view)> writePassword;  ///< Sends the password and CR LF.
    std::function<void()> sendCancel;
    std::function<std::optional<std::string>(std::string_view prompt, std::string_view title)> ask;
  };

  /// Maximum size in bytes of received text without a prompt. If it grows larger, only its last 32768 bytes
  /// are kept.
  static constexpr std::size_t kBufferBound = 65536;

  TelnetLogin(SettingsStore& settings, Actions actions) : settings_(settings), actions_(std::move(actions)) {}

  void ResetLogin();
  bool LoginComplete() const { return state_ == LoginState::Connected; }
  bool LoginFailed() const { return state_ == LoginState::Refused; }
  LoginState state() const { return state_; }
  /// Returns whether the user is being asked for the password.
  bool Asking() const { return asking_; }
  /// Marks the login as complete. Used for a route that needs no login.
  void SetConnected() { state_ = LoginState::Connected; }

  /// Processes received text and sends the answer. An empty text has no effect.
  void LoginStep(std::string_view text);

 private:
  bool Holds(const std::string& prompt) const;
  void AskForPassword();

  SettingsStore& settings_;
  Actions actions_;
  LoginState state_ = LoginState::Idle;
  unsigned login_ = 0;  // number of ResetLogin calls, to detect a new login
  bool asking_ = false;
  std::string loginBuffer_;  // received text since the last match, in upper case
};

}  // namespace corvex
