#include "trace/TraceControl.h"

#include <utility>

#include "base/Text.h"

namespace corvex {

namespace {

constexpr char kOn = 3;
constexpr char kSecondOn = '\x81';
constexpr char kSecondOff = '\x82';

/// The largest number of channel windows. The modem chooses the channel numbers, so records of further
/// channels are dropped.
constexpr std::size_t kMostWindows = 32;

/// Returns whether the modem treats received characters as commands in this mode. Trace cannot be switched
/// on or off in such a mode.
bool IsCommandMode(ModemMode mode) {
  return mode == ModemMode::TestInterface || mode == ModemMode::AtMode;
}

}  // namespace

TraceControl::TraceControl(const Parts& parts) : p_(parts), tracer_(parts.platform, parts.settings) {
  tracer_.send = [this](char character) { Send(character); };
  tracer_.ends = [this] { SetEnabled(false); };
}

void TraceControl::Connect() {
  p_.window.mnuTrace.click = [this] { Toggle(); };
  p_.window.mnuSUTrace.click = [this] { ToggleSecond(); };
}

void TraceControl::Toggle() {
  if (Refuses("Trace not available in this mode")) return;
  SetEnabled(!p_.state.traceEnabled);
  if (!p_.state.traceEnabled) {
    tracer_.Unload();
    return;
  }
  tracer_.Open();
  p_.layout.FocusScreen();
  owed_ = p_.main.mode != ModemMode::Terminal;
  if (!owed_) Send(kOn);
}

void TraceControl::ToggleSecond() {
  if (Refuses("SU Trace not available in this mode")) return;
  bool& on = p_.state.suTraceEnabled;
  on = !on;
  p_.window.mnuSUTrace.checked = on;
  if (on) p_.layout.FocusScreen();
  TellSecond();
}

/// Sends the state of the second stream if it has changed. Outside a session, SessionOpened sends it later.
void TraceControl::TellSecond() {
  const bool on = p_.state.suTraceEnabled;
  if (p_.main.mode != ModemMode::Terminal || on == secondTold_) return;
  secondTold_ = on;
  Send(on ? kSecondOn : kSecondOff);
}

void TraceControl::SessionOpened() {
  if (std::exchange(owed_, false)) Send(kOn);
  TellSecond();
}

bool TraceControl::Refuses(std::string_view message) const {
  if (p_.main.mode == ModemMode::Closing) return true;
  if (!IsCommandMode(p_.main.mode)) return false;
  p_.platform.dialogs.MessageBox(message);
  return true;
}

void TraceControl::SetEnabled(bool on) {
  owed_ = false;
  p_.state.traceEnabled = on;
  p_.window.mnuTrace.checked = on;
}

/// Does nothing while an exchange with the modem or a command line uses the link, because an extra byte would
/// disturb it. This can happen: a window can be closed in any mode, and the mode can change while it waits.
void TraceControl::Send(char character) const {
  if (LinkTaken(p_.main) || IsCommandMode(p_.main.mode)) return;
  p_.link.WriteText({&character, 1});
}

void TraceControl::TraceToInstance(std::int32_t channel, std::string_view text) {
  if (channel == 0) return;
  auto found = instances_.find(channel);
  if (found == instances_.end()) {
    if (instances_.size() >= kMostWindows) return;
    found = instances_.emplace(channel, std::make_unique<frmTraceInstance>(p_.platform, p_.settings)).first;
    frmTraceInstance& made = *found->second;
    made.quit = [this] { SetEnabled(false); };  // Intentional: stops the records of the master window.
    made.Open();
    made.NameInstance(NumberText(channel));
  }
  found->second->TraceText(text);
}

}  // namespace corvex
