#include "link/modTelnet.h"

#include "base/ScopedFlag.h"
#include "base/Text.h"

namespace corvex {

void TelnetLogin::ResetLogin() {
  loginBuffer_.clear();
  state_ = LoginState::Idle;
  ++login_;
}

bool TelnetLogin::Holds(const std::string& prompt) const {
  return Contains(loginBuffer_, UpperCase(prompt));
}

void TelnetLogin::LoginStep(std::string_view text) {
  if (text.empty()) return;
  loginBuffer_ += UpperCase(text);
  const unsigned login = login_;
  const auto& config = settings_.config;
  // The order matters if several prompts have arrived together.
  if (Holds(config.promptusername.Get())) {
    state_ = LoginState::UserSent;
    loginBuffer_.clear();
    actions_.writeText(config.username.Get() + std::string(kCrLf));
  } else if (Holds(config.muberror.Get())) {
    loginBuffer_.clear();
    state_ = LoginState::Refused;
  } else if (Holds(config.promptpassword.Get())) {
    state_ = LoginState::PasswordSent;
    loginBuffer_.clear();
    actions_.writePassword(config.password.Get());
  } else if (Holds("ALREADY IN USE")) {
    actions_.writeText("killall -9 modem\r\n");
    state_ = LoginState::Refused;
    return;  // without clearing the buffer; intentional
  } else if (Holds(config.prompttelnet.Get())) {
    state_ = LoginState::MubRequested;
    loginBuffer_.clear();
    actions_.writeText("modem " + config.mubselect.Get() + std::string(kCrLf));
  } else if (Holds(config.connected.Get())) {
    state_ = LoginState::Connected;
    loginBuffer_.clear();
  } else if (Holds(config.incorrect.Get())) {
    loginBuffer_.clear();
    AskForPassword();
  } else if (Holds("<TML>")) {
    // The modem is already sending tag packets.
    state_ = LoginState::Connected;
    loginBuffer_.clear();
    actions_.sendCancel();
  }
  if (login != login_) return;  // another login began during this step and now owns the link
  // After a rejected password this is the second CR LF. Both are intentional.
  if (state_ == LoginState::Idle && loginBuffer_.empty()) actions_.writeText(kCrLf);
  if (loginBuffer_.size() > kBufferBound) loginBuffer_.erase(0, loginBuffer_.size() - kBufferBound / 2);
}

void TelnetLogin::AskForPassword() {
  auto& config = settings_.config;
  const unsigned login = login_;
  std::optional<std::string> typed;
  {
    const ScopedFlag asking(asking_);
    typed = actions_.ask("Enter password for " + config.username.Get(),
                         "Telnet login Mub " + config.mubselect.Get());
  }
  // An empty password is stored too. If the user cancels the question, the old password is kept.
  if (typed) config.password.Set(*typed);
  if (login != login_) return;  // the new login uses the password
  actions_.writeText(kCrLf);
  state_ = LoginState::Idle;
}

}  // namespace corvex
