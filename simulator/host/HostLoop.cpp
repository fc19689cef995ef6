#include "host/HostLoop.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace corvex::simulation::host {

EventLoop::Time HostLoop::Now() const {
  return std::chrono::steady_clock::now().time_since_epoch();
}

double HostLoop::SecondsSinceMidnight() const {
  return std::fmod(LocalTime(), 86400);
}

std::int64_t HostLoop::LocalSeconds() const {
  return static_cast<std::int64_t>(LocalTime());
}

void HostLoop::Watch(Handle handle, bool write, std::function<void()> onReady) {
  watched_[handle] = {write, std::move(onReady)};
}

void HostLoop::Unwatch(Handle handle) {
  watched_.erase(handle);
}

void HostLoop::Run() {
  while (!EndRequested() && Enter([this] { Pump(); })) {
  }
}

void HostLoop::Sleep(Time until) {
  WaitAndServe(until == Time::max() ? Time(-1) : std::max(until - Now(), Time::zero()));
}

void HostLoop::Poll() {
  WaitAndServe(Time::zero());
}

void HostLoop::WaitAndServe(Time time) {
  std::vector<host::Watch> watches;
  watches.reserve(watched_.size());
  for (const auto& [handle, watched] : watched_) watches.push_back({handle, watched.write, false});
  host::Wait(watches, time);
  for (const host::Watch& watch : watches) {
    // One that was served before may have taken this one away.
    const auto watched = watched_.find(watch.handle);
    if (!watch.ready || watched == watched_.end()) continue;
    const auto onReady = watched->second.onReady;
    onReady();
  }
}

}  // namespace corvex::simulation::host
