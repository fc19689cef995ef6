#include "unit/ErbFront.h"

#include <algorithm>
#include <utility>

namespace corvex::simulation {
namespace {

constexpr std::string_view kEndOfSession = "AT+ERB_TRANSPARENT_MODE";

struct Identity {
  std::string_view name;
  std::string_view model;
};
constexpr std::array<Identity, ErbOptions::kMubs> kIdentities{{{"Master MUB on Master SDU", "204417"},
                                                               {"Slave MUB on Master SDU", "204938"},
                                                               {"Master MUB on Slave SDU", "205226"},
                                                               {"Slave MUB on Slave SDU", "205581"}}};

}  // namespace

ErbFront::ErbFront(EventLoop& loop, ErbOptions options, Send send)
    : options_(std::move(options)), send_(std::move(send)), timer_(loop) {
  for (std::size_t i = 0; i < units_.size(); ++i) {
    UnitOptions unit = options_.unit;
    unit.mubInfo = kIdentities[i].name;
    if (i > 0) unit.modelReply = kIdentities[i].model;
    units_[i] = std::make_unique<Unit>(loop, std::move(unit), [this, i](std::string_view bytes) {
      if (mub_ == i) send_(bytes);
    });
  }
}

void ErbFront::LineUp() {
  if (options_.serial) return;
  EndSession();
  Prompt(State::UserName);
}

void ErbFront::LineDown() {
  if (options_.serial) return;
  if (mub_ && options_.lingers) options_.mubs[*mub_] = MubState::InUse;
  EndSession();
}

void ErbFront::Receive(std::string_view bytes) {
  std::string echo;
  std::string through;
  const auto flush = [&] {
    if (!echo.empty()) send_(std::exchange(echo, {}));
    if (!through.empty()) units_[*mub_]->Receive(std::exchange(through, {}));
  };
  for (const char c : bytes) {
    if (std::exchange(afterWord_, false) && c == '\r') continue;
    const bool ends = EndsSession(c);
    if (mub_) {
      through += c;
    } else if (state_ != State::Busy) {  // characters are ignored while an answer is pending
      if (const auto line = line_.Take(c, echo)) {
        flush();
        Execute(line->text);
      }
    }
    if (!ends) continue;
    flush();
    EndSession();
    Prompt(State::UserName);
    afterWord_ = true;
  }
  flush();
}

bool ErbFront::EndsSession(char c) {
  latest_ += c;
  if (latest_.size() > kEndOfSession.size()) latest_.erase(0, 1);
  return latest_ == kEndOfSession;
}

void ErbFront::EndSession() {
  timer_.Stop();
  latest_.clear();
  afterWord_ = false;
  if (mub_) units_[*std::exchange(mub_, std::nullopt)]->LineDown();
}

void ErbFront::Execute(const std::string& line) {
  switch (state_) {
    case State::UserName:
      user_ = line;
      return After(options_.answerTime,
                   [this] { Prompt(user_.empty() ? State::UserName : State::Password); });
    case State::Password: {
      const bool right = user_ == options_.user && line == options_.password;
      return After(options_.answerTime, [this, right] {
        if (right) return Prompt(State::Command);
        send_("\r\nLogin incorrect\r\n");
        After(options_.refusalTime, [this] { Prompt(State::UserName); });
      });
    }
    case State::Command:
      return After(options_.answerTime, [this, line] { ExecuteCommand(line); });
    case State::Busy:
      return;
  }
}

void ErbFront::ExecuteCommand(const std::string& line) {
  constexpr std::string_view kModem = "modem ";
  if (line.starts_with(kModem)) return Connect(line.substr(kModem.size()));
  if (line.empty()) return Prompt(State::Command);
  if (line == "exit") return Prompt(State::UserName);
  if (line == "killall -9 modem") {
    std::replace(options_.mubs.begin(), options_.mubs.end(), MubState::InUse, MubState::Free);
    return Prompt(State::Command);
  }
  Prompt(State::Command, line + ": not found");
}

void ErbFront::Connect(const std::string& number) {
  const bool exists =
      number.size() == 1 && number[0] >= '0' && number[0] < '0' + static_cast<int>(units_.size());
  const auto mub = exists ? static_cast<std::size_t>(number[0] - '0') : 0;
  switch (exists ? options_.mubs[mub] : MubState::Broken) {
    case MubState::Broken:
      return Prompt(State::Command, "serial_open: No such device");
    case MubState::InUse:
      return Prompt(State::Command, "modem " + number + " already in use");
    case MubState::Free:
      send_("\r\nconnected to modem " + number + "\r\n");
      mub_ = mub;
      return units_[mub]->LineUp();
  }
}

/// `before`: a line to send before the prompt.
void ErbFront::Prompt(State next, std::string_view before) {
  static constexpr std::string_view kPrompts[] = {"ERB login: ", "Password: ", "ERB> "};
  state_ = next;
  line_.Clear();
  line_.SetEcho(next != State::Password);
  std::string text = "\r\n";
  if (!before.empty()) text.append(before).append("\r\n");
  send_(text.append(kPrompts[static_cast<std::size_t>(next)]));
}

void ErbFront::After(EventLoop::Time time, EventLoop::Task task) {
  if (time <= EventLoop::Time::zero()) return task();
  state_ = State::Busy;
  timer_.Start(time, std::move(task));
}

}  // namespace corvex::simulation
