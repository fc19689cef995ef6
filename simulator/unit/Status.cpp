#include "unit/Status.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "unit/Wire.h"

namespace corvex::simulation {
namespace {

constexpr int kNewMailTick = 45;
constexpr int kDspTicks = 12;
constexpr int kLeg = 5000;

/// Returns the last two digits of a number.
std::string Two(std::int64_t number) {
  const auto n = static_cast<int>(number % 100);
  return {static_cast<char>('0' + n / 10), static_cast<char>('0' + n % 10)};
}

/// Formats thousandths of a minute as degrees and minutes.
std::string Angle(char side, int thousandths, int degreeDigits) {
  const int degrees = thousandths / 60000;
  const int rest = thousandths % 60000;
  const std::string digits = std::to_string(degrees);
  const std::string padding(static_cast<std::size_t>(degreeDigits) - digits.size(), '0');
  return std::string{side, ' '} + padding + digits + ' ' + Two(rest / 1000) + '.' + Two(rest % 1000 / 10);
}

}  // namespace

Status::Status(EventLoop& loop, std::optional<std::int64_t> start, std::string model,
               std::string_view mubInfo, std::uint32_t seed)
    : loop_(loop),
      start_(start.value_or(loop.LocalSeconds())),
      begun_(loop.Now()),
      random_(seed + 1),
      values_{{"model", std::move(model)},
              {"language", "English"},
              {"network", "Atlantic East"},
              {"mailcount", "0"},
              {"pin", ""},
              {"number", ""}},
      conditions_{{"sim", "Sim", ""},          {"compression", "none", ""},
                  {"mail", "NoMail", ""},      {"beam", "Spotinfo", "SPOT BEAM 7"},
                  {"mub", "MUBinfo", mubInfo}, {"user", "Userinfo", "Owner level"}} {}

std::int64_t Status::Seconds() const {
  return start_ + std::chrono::duration_cast<std::chrono::seconds>(loop_.Now() - begun_).count();
}

std::string Status::TimeText() const {
  const std::int64_t ofDay = Seconds() % 86400;
  return Two(ofDay / 3600) + ':' + Two(ofDay / 60 % 60);
}

std::string Status::DateText() const {
  const std::chrono::sys_days day{std::chrono::days(Seconds() / 86400)};
  const std::chrono::year_month_day date{day};
  return std::to_string(static_cast<int>(date.year())) + '.' + Two(static_cast<unsigned>(date.month())) +
         '.' + Two(static_cast<unsigned>(date.day()));
}

std::string Status::DatePayload() const {
  return TimeText() + '|' + DateText() + "|UTC";
}

std::string Status::PositionText() const {
  return Angle('N', latitude_, 2) + "  " + Angle('E', longitude_, 3);
}

std::string Status::Report() const {
  std::string report =
      Packet("Date", DatePayload()) + Packet("Sig", std::to_string(signal_)) +
      Packet("Temp", std::to_string(temperature_)) + Packet("PsuTemp", std::to_string(supplyTemperature_)) +
      Packet("GpsPos", PositionText()) + Packet("gpshead", "HDG " + std::to_string(heading_));
  for (const Effect& condition : conditions_) report += Packet(condition.tag, condition.payload);
  return report;
}

std::string Status::Tick() {
  ++ticks_;
  std::string packets = Seconds() % 60 == 0 ? Packet("Date", DatePayload()) : Packet("Time", TimeText());
  if (const int drift = Drift(); ticks_ % 2 == 0 && drift != 0) {
    signal_ = std::clamp(signal_ + drift, 38, 62);
    packets += Packet("Sig", std::to_string(signal_));
  }
  if (ticks_ % 5 == 0) {
    const int leg = ticks_ / 5 % kLeg;  // the ship sails its leg and then starts again
    latitude_ = kLatitude + leg * 7;
    longitude_ = kLongitude + leg * 4;
    heading_ = std::clamp(heading_ + Drift(), 205, 225);
    packets += Packet("GpsPos", PositionText()) + Packet("gpshead", "HDG " + std::to_string(heading_));
  }
  if (ticks_ % 20 == 0) {
    temperature_ = std::clamp(temperature_ + Drift(), 35, 48);
    packets += Packet("Temp", std::to_string(temperature_));
    supplyTemperature_ = std::clamp(supplyTemperature_ + Drift(), 33, 44);
    packets += Packet("PsuTemp", std::to_string(supplyTemperature_));
  }
  if (ticks_ % kDspTicks == 0) {
    // The count of numbers, itself included, then 16-bit numbers. Negative ones are sent unsigned.
    packets += Packet("DSPinfo", "4," + std::to_string(ticks_ / kDspTicks % 8) + ',' +
                                     std::to_string(65536 - signal_ % 8 - 1) + ',' +
                                     std::to_string(ticks_ * 38 % 32768));
  }
  if (ticks_ == kNewMailTick) packets += Apply({"mail", "NewMail", ""}) + Packet("STone", "40");
  return packets;
}

std::string Status::Apply(const Effect& effect) {
  if (effect.tag.empty()) return {};
  if (effect.group.empty()) return Packet(effect.tag, effect.payload);
  const auto same = std::find_if(conditions_.begin(), conditions_.end(),
                                 [&](const Effect& condition) { return condition.group == effect.group; });
  if (same != conditions_.end()) {
    *same = effect;
  } else {
    conditions_.push_back(effect);
  }
  return Packet(effect.tag, effect.payload);
}

std::string Status::Value(std::string_view name) const {
  if (name == "time") return TimeText();
  if (name == "date") return DateText();
  if (name == "signal") return std::to_string(signal_);
  if (name == "temperature") return std::to_string(temperature_);
  if (name == "supply") return std::to_string(supplyTemperature_);
  if (name == "heading") return std::to_string(heading_);
  if (name == "position") return PositionText();
  if (name == "beam") {
    for (const Effect& condition : conditions_) {
      if (condition.group == name) return std::string(condition.payload);
    }
  }
  const auto value = values_.find(name);
  return value == values_.end() ? std::string() : value->second;
}

std::string Status::Text(std::string_view pattern) const {
  std::string text;
  while (true) {
    const std::size_t open = pattern.find('{');
    const std::size_t close = pattern.find('}', open);
    if (open == std::string_view::npos || close == std::string_view::npos) break;
    text += pattern.substr(0, open);
    text += Value(pattern.substr(open + 1, close - open - 1));
    pattern.remove_prefix(close + 1);
  }
  return text += pattern;
}

int Status::Drift() {
  return static_cast<int>(random_() % 3) - 1;
}

}  // namespace corvex::simulation
