#include "host/HostLoop.h"

#include <asio/post.hpp>
#include <chrono>
#include <cmath>
#include <csignal>
#include <ctime>

namespace corvex::simulation::host {
namespace {

/// Returns the seconds since 1970-01-01 00:00 in the local time zone, with fraction.
double LocalTime() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t whole = system_clock::to_time_t(now);
  const std::tm local = *std::localtime(&whole);
  const sys_days day = year(local.tm_year + 1900) / (local.tm_mon + 1) / local.tm_mday;
  const auto time =
      day.time_since_epoch() + hours(local.tm_hour) + minutes(local.tm_min) + seconds(local.tm_sec);
  return duration<double>(time).count() + duration<double>(now - system_clock::from_time_t(whole)).count();
}

}  // namespace

HostLoop::HostLoop() {
  signals_.add(SIGINT);
  signals_.add(SIGTERM);
#ifdef SIGHUP
  signals_.add(SIGHUP);
#endif
#ifdef SIGBREAK
  signals_.add(SIGBREAK);
#endif
  signals_.async_wait([this](std::error_code error, int) {
    if (!error) End();
  });
}

EventLoop::Time HostLoop::Now() const {
  return std::chrono::steady_clock::now().time_since_epoch();
}

double HostLoop::SecondsSinceMidnight() const {
  return std::fmod(LocalTime(), 86400);
}

std::int64_t HostLoop::LocalSeconds() const {
  return static_cast<std::int64_t>(LocalTime());
}

void HostLoop::Run() {
  while (Enter([this] { Pump(); })) {
  }
}

void HostLoop::Sleep(Time until) {
  if (until == Time::max()) {
    io_.run_one();
  } else {
    io_.run_one_until(std::chrono::steady_clock::time_point(until));
  }
}

void HostLoop::Poll() {
  io_.poll();
}

void HostLoop::WakeFromAnyThread() {
  asio::post(io_, [] {});
}

}  // namespace corvex::simulation::host
