#include "session/Silence.h"

#include <cstdio>

namespace corvex {

namespace {

/// A time in seconds since the beginning of 1970 as "12:34:56".
std::string TimeOfDay(std::int64_t seconds) {
  const auto ofDay = static_cast<int>(((seconds % 86400) + 86400) % 86400);
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", ofDay / 3600, ofDay / 60 % 60, ofDay % 60);
  return text;
}

}  // namespace

Silence::~Silence() {
  window_.loop().Cancel(timer_);
}

void Silence::Watch() {
  Stop();
  heard_ = window_.loop().Now();
  timer_ = window_.loop().After(kLimit, [this] { Check(); });
}

void Silence::Heard() {
  heard_ = window_.loop().Now();
  if (!window_.frmScreen.dimmed) return;
  Hide();
  Watch();
}

void Silence::Stop() {
  window_.loop().Cancel(timer_);
  timer_ = 0;
  Hide();
}

void Silence::Check() {
  timer_ = 0;
  if (main_.mode != ModemMode::Terminal) return;
  const auto rest = heard_ + kLimit - window_.loop().Now();
  if (rest <= EventLoop::Time::zero()) {
    Show();
  } else {
    timer_ = window_.loop().After(rest, [this] { Check(); });
  }
}

void Silence::Show() {
  Label& label = window_.lblPort;
  port_ = label.caption;
  portTip_ = label.toolTip;
  const auto silent = std::chrono::duration_cast<std::chrono::seconds>(window_.loop().Now() - heard_);
  const std::string since = TimeOfDay(window_.loop().LocalSeconds() - silent.count());
  SetDimmed(true);
  label.caption = "!" + since.substr(0, 5);
  label.toolTip = "Nothing received since " + since;
  label.accessible = "Port: nothing received since " + since;
}

void Silence::SetDimmed(bool dimmed) {
  window_.frmScreen.dimmed = dimmed;
  for (Label& label : window_.lblGps) label.enabled = !dimmed;
}

void Silence::Hide() {
  if (!window_.frmScreen.dimmed) return;
  SetDimmed(false);
  window_.lblPort.caption = port_;
  window_.lblPort.toolTip = portTip_;
  window_.lblPort.accessible = TermControls::kPortSpoken;
}

}  // namespace corvex
