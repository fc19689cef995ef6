#include "session/modLogger.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "base/Text.h"

namespace corvex {

namespace {

namespace chrono = std::chrono;
using LocalTime = chrono::sys_seconds;

constexpr std::string_view kForm = "0000-00-00 00:00:00";  // each 0 represents a digit

LocalTime Now(const EventLoop& loop) {
  return LocalTime(chrono::seconds(loop.LocalSeconds()));
}

std::string Stamp(LocalTime time) {
  const auto day = chrono::floor<chrono::days>(time);
  const chrono::year_month_day date(day);
  const chrono::hh_mm_ss clock(time - day);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text.data();
}

std::optional<LocalTime> TimeOf(std::string_view stamp) {
  if (stamp.size() != kForm.size()) return std::nullopt;
  for (std::size_t i = 0; i < stamp.size(); ++i) {
    if (kForm[i] == '0' ? !IsDigit(stamp[i]) : stamp[i] != kForm[i]) return std::nullopt;
  }
  const auto number = [&](std::size_t at, std::size_t digits) {
    return *FewDigits(stamp.substr(at, digits));
  };
  const chrono::year_month_day date(chrono::year(number(0, 4)),
                                    chrono::month(static_cast<unsigned>(number(5, 2))),
                                    chrono::day(static_cast<unsigned>(number(8, 2))));
  const int hours = number(11, 2);
  const int minutes = number(14, 2);
  const int seconds = number(17, 2);
  if (!date.ok() || hours > 23 || minutes > 59 || seconds > 59) return std::nullopt;
  return chrono::sys_days(date) + chrono::hours(hours) + chrono::minutes(minutes) + chrono::seconds(seconds);
}

bool Store(const std::string& stamp, SettingsStore& settings) {
  settings.logging.lasttime.Set(stamp);
  return settings.logging.lasttime.Get() == stamp;
}

}  // namespace

bool LogDue(const EventLoop& loop, SettingsStore& settings) {
  const LocalTime now = Now(loop);
  const std::string last = settings.logging.lasttime.Get();
  if (last.empty()) {
    Store(Stamp(now), settings);
    return false;
  }
  const auto time = TimeOf(last);
  if (!time) return false;
  // Counts the minutes that a clock shows: from 10:00:59 to 10:01:00 is one minute. A clock that was set back
  // counts like one that was set forward.
  const auto minutes = (chrono::floor<chrono::minutes>(now) - chrono::floor<chrono::minutes>(*time)).count();
  return std::abs(minutes) >= settings.logging.interval.Get() && Store(Stamp(now), settings);
}

std::string LogFileName(const EventLoop& loop, const std::string& /*statusNumber*/) {
  const std::string stamp = Stamp(Now(loop));
  return "Blog" + stamp.substr(5, 2) + stamp.substr(8, 2) + stamp.substr(11, 2) + stamp.substr(14, 2) +
         ".txt";
}

}  // namespace corvex
