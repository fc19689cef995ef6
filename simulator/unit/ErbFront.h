#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "unit/CommandLine.h"
#include "unit/Timer.h"
#include "unit/Unit.h"

namespace corvex::simulation {

/// The state of a MUB. A request to connect succeeds if the MUB is Free, is refused if it is InUse by another
/// user, and fails if it is Broken, because its line does not open.
enum class MubState { Free, InUse, Broken };

struct ErbOptions {
  static constexpr std::size_t kMubs = 4;

  std::string user = "root";
  std::string password = "zzz";
  std::array<MubState, kMubs> mubs{};
  /// True if the ERB unit is connected over a serial port. The unit does not notice when the port opens or
  /// closes, so a session continues after the port closes. If false, each connection starts with a login
  /// prompt.
  bool serial = false;
  /// If true, a MUB stays in use when its user disconnects without ending the session.
  bool lingers = false;
  EventLoop::Time answerTime{0};                          ///< from the end of a line to its answer
  EventLoop::Time refusalTime = std::chrono::seconds(1);  ///< from a refusal to the next login prompt
  /// Options of all MUBs. Each MUB gets its own name, and each one but the first its own model.
  UnitOptions unit = {};
};

/// A simulated ERB unit, accessed over its line. It connects a user who knows the password to one of four
/// MUBs, two on each of two SDUs.
///
///   ERB login: root                  the name is echoed,
///   Password:                        the password is not
///   ERB> modem 1
///   connected to modem 1             from here on, the line belongs to the MUB
///   …AT+ERB_TRANSPARENT_MODE         until this word, which needs no line end
///
/// The word AT+ERB_TRANSPARENT_MODE returns to the login prompt from any state. A CR directly after the word
/// is ignored. The answer for a MUB in use is "modem N already in use". The command "killall -9 modem" frees
/// all MUBs that are in use.
class ErbFront {
 public:
  using Options = ErbOptions;
  using Send = std::function<void(std::string_view)>;

  ErbFront(EventLoop& loop, ErbOptions options, Send send);
  ErbFront(const ErbFront&) = delete;
  ErbFront& operator=(const ErbFront&) = delete;

  void Receive(std::string_view bytes);
  /// Called when the line connects or disconnects. Must not be called from within Send.
  void LineUp();
  void LineDown();
  /// The connected MUB; null if the line leads to the ERB unit itself.
  const Unit* Mub() const { return mub_ ? units_[*mub_].get() : nullptr; }

 private:
  enum class State { UserName, Password, Command, Busy };

  bool EndsSession(char c);
  void EndSession();
  void Execute(const std::string& line);
  void ExecuteCommand(const std::string& line);
  void Connect(const std::string& number);
  void Prompt(State next, std::string_view before = {});
  void After(EventLoop::Time time, EventLoop::Task task);

  ErbOptions options_;
  Send send_;
  std::array<std::unique_ptr<Unit>, ErbOptions::kMubs> units_;
  std::optional<std::size_t> mub_;
  State state_ = State::UserName;
  CommandLine line_;
  std::string user_;
  std::string latest_;  // the last characters received, up to the length of the word that ends a session
  bool afterWord_ = false;
  Timer timer_;
};

}  // namespace corvex::simulation
