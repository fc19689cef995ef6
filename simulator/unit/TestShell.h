#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include "unit/Timer.h"

namespace corvex::simulation {

/// The unit's test shell. A line of eight fields sets up a channel, which then sends reports until it is
/// stopped.
///
///   tdm 12800 12800 1.0 3 1 0 12.0
///
/// The fields are the kind of channel, the receive and transmit channel numbers, the level, the modulation,
/// whether it transmits, whether interleaving is off, and the antenna gain.
class TestShell {
 public:
  static constexpr EventLoop::Time kReportTime = std::chrono::seconds(2);
  static constexpr EventLoop::Time kTraceTime = std::chrono::milliseconds(500);
  static constexpr std::string_view kPrompt = "TEST> ";

  TestShell(EventLoop& loop, std::function<void(std::string_view)> send, std::uint32_t seed)
      : send_(std::move(send)), reports_(loop), trace_(loop), random_(seed + 2) {}

  void Start();
  void Stop();
  bool Running() const { return running_; }

  /// Executes a line, given without its line end. "quit" ends the shell.
  void Execute(std::string_view line);

 private:
  struct Channel {
    std::string kind;
    int receives = 0;
    int sends = 0;
    std::string level;
    bool transmits = false;
    long long blocks = 0;
    long long errors = 0;
    int reports = 0;
  };

  static std::optional<Channel> Parse(std::string_view line);
  std::string Answer(std::string_view line);
  std::string StopChannel();
  void Report();
  void Trace();
  int Drift(int most) { return static_cast<int>(random_() % static_cast<unsigned>(most + 1)); }

  std::function<void(std::string_view)> send_;
  Timer reports_;
  Timer trace_;
  std::minstd_rand random_;
  std::optional<Channel> channel_;
  bool running_ = false;
  bool debug_ = false;
};

}  // namespace corvex::simulation
