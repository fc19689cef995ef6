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

/// The state that the unit reports: its clock, its measurements and the settings of its user.
class Status {
 public:
  /// `start`: the unit's clock at construction, in seconds since 1970; by default the PC's local time.
  /// `mubInfo`: a text that must outlive this object.
  Status(EventLoop& loop, std::optional<std::int64_t> start, std::string model, std::string_view mubInfo,
         std::uint32_t seed);

  /// Returns the packets of a full report, for the start of a session: date, measurements and conditions.
  std::string Report() const;

  /// Advances by one tick and changes the measurements a little. Returns the packets that report the changes.
  /// The time is always included, so that the PC sees that the unit is alive.
  std::string Tick();

  /// Applies an effect and returns its packet. The packet is empty if `effect` has no tag.
  std::string Apply(const Effect& effect);

  void SetValue(std::string_view name, std::string_view text) { values_[std::string(name)] = text; }
  std::string Value(std::string_view name) const;

  /// Replaces the placeholders of a text: {time}, {date}, {signal}, {position}, … and the values that the
  /// user has set. A placeholder with an unknown name is removed.
  std::string Text(std::string_view pattern) const;

 private:
  std::int64_t Seconds() const;
  std::string TimeText() const;
  std::string DateText() const;
  std::string PositionText() const;
  std::string DatePayload() const;
  /// Returns -1, 0 or 1; the sequence depends on the seed alone.
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
  std::vector<Effect> conditions_;  // one for each group, in the order of the report
};

}  // namespace corvex::simulation
