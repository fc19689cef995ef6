#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/EventLoop.h"
#include "unit/Screens.h"

namespace corvex::simulation {

/// The unit's condition: its clock, what its receivers measure, and what its user has set.
class Status {
 public:
  /// `start`: the unit's clock at construction, in seconds since 1970; by default the PC's local time.
  /// `mubInfo`: a text that outlives this.
  Status(EventLoop& loop, std::optional<std::int64_t> start, std::string model, std::string_view mubInfo,
         std::uint32_t seed);

  /// All there is to tell at the beginning of a session: date, measurements, conditions.
  std::string Report() const;

  /// One tick of the clock: things drift a little. Returns the packets that tell of it; the time is among
  /// them always, as the unit's sign of life.
  std::string Tick();

  /// Carries out an effect and returns its packet; empty for the effect that is none.
  std::string Apply(const Effect& effect);

  void SetValue(std::string_view name, std::string_view text) { values_[std::string(name)] = text; }
  std::string Value(std::string_view name) const;

  /// Fills in the places of a text: {time}, {date}, {signal}, {position}, … and the values that the user has
  /// set. A place of an unknown name stays empty.
  std::string Text(std::string_view pattern) const;

 private:
  std::int64_t Seconds() const;
  std::string TimeText() const;
  std::string DateText() const;
  std::string PositionText() const;
  std::string DatePayload() const;
  /// -1, 0 or 1, the same sequence for the same seed.
  int Drift();

  static constexpr int kLatitude = 59 * 60000 + 54210;
  static constexpr int kLongitude = 10 * 60000 + 44610;

  EventLoop& loop_;
  std::int64_t start_;
  EventLoop::Time begun_;
  std::minstd_rand random_;
  int ticks_ = 0;
  int signal_ = 52;       // dB/Hz
  int temperature_ = 41;  // degrees C
  int supplyTemperature_ = 38;
  int heading_ = 214;         // degrees
  int latitude_ = kLatitude;  // thousandths of a minute
  int longitude_ = kLongitude;
  std::map<std::string, std::string, std::less<>> values_;
  std::vector<Effect> conditions_;  // one for each group, in the order in which they are reported
};

}  // namespace corvex::simulation
