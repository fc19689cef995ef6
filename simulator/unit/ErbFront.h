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

/// What becomes of a wish for a MUB: it is connected, somebody else has it, or its line does not open.
enum class MubState { Free, InUse, Broken };

struct ErbOptions {
  static constexpr std::size_t kMubs = 4;

  std::string user = "root";
  std::string password = "zzz";
  std::array<MubState, kMubs> mubs{};
  /// Behind a serial port, which knows no coming and going: what goes on there outlives the port's closing.
  /// Otherwise each time the line comes up begins with a login prompt.
  bool serial = false;
  /// A MUB whose user goes without ending the session stays in use.
  bool lingers = false;
  EventLoop::Time answerTime{0};                          ///< from the end of a line to what it answers
  EventLoop::Time refusalTime = std::chrono::seconds(1);  ///< from a refusal to the next login prompt
  UnitOptions unit = {};  ///< Of all MUBs, but each has a name of its own, and all behind the first a model.
};

/// A simulated ERB unit, seen through its line: it stands in front of four MUBs, two on each of two SDUs, and
/// lets a user in who knows its password.
///
///   ERB login: root                  the name is echoed,
///   Password:                        the password is not
///   ERB> modem 1
///   connected to modem 1             from here on the line is the MUB's
///   …AT+ERB_TRANSPARENT_MODE         until this, which needs no line end and leads to the login prompt
///
/// The word does so from everywhere, and a line end right behind it belongs to it. "modem N already in use"
/// is what a MUB says that somebody else has; "killall -9 modem" takes it from him.
class ErbFront {
 public:
  using Options = ErbOptions;
  using Send = std::function<void(std::string_view)>;

  ErbFront(EventLoop& loop, ErbOptions options, Send send);
  ErbFront(const ErbFront&) = delete;
  ErbFront& operator=(const ErbFront&) = delete;

  void Receive(std::string_view bytes);
  /// The line comes or goes; not from within Send.
  void LineUp();
  void LineDown();
  /// The MUB that the line leads to; null while it leads to the front itself.
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
  std::string latest_;  // as many characters as the word has that ends a session
  bool behindWord_ = false;
  Timer timer_;
};

}  // namespace corvex::simulation
