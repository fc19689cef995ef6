#include "link/modCommSupport.h"

#include "base/Text.h"

namespace corvex {

namespace {

constexpr int kRounds = 6;

}  // namespace

void LoadPortSettings(SerialControl& comPort, SettingsStore& settings) {
  auto& port = settings.port;
  if (port.com.GetOrUnsaved() == "?") {
    comPort.SetCommPort(1);
    comPort.SetSettings("115200,n,8,1");
    comPort.SetHandshaking(2);
    SavePortSettings(comPort, settings);
    return;
  }
  comPort.SetSettings(port.settings.Get());
  comPort.SetCommPort(ToInt16(port.com.Get()).value_or(1));
  comPort.SetHandshaking(port.flow.Get());
}

void SavePortSettings(const SerialControl& comPort, SettingsStore& settings) {
  settings.port.settings.Set(comPort.Settings());
  settings.port.flow.Set(comPort.Handshaking());  // 0 after a link has been closed; intentional
  settings.port.com.Set(std::to_string(comPort.CommPort()));
}

std::string ComDeviceName(const SettingsStore& settings, int number) {
  const std::string named = settings.devices.Get(number);
  if (!named.empty()) return named;
#if defined(_WIN32)
  return "COM" + std::to_string(number);
#else
  // USB adapters have the lowest numbers, because few computers have a built-in serial port.
  struct Family {
    int first;
    const char* name;
  };
  constexpr Family kFamilies[] = {{13, "/dev/ttyS"}, {9, "/dev/ttyACM"}, {1, "/dev/ttyUSB"}};
  for (const auto& [first, name] : kFamilies) {
    if (number >= first) return name + std::to_string(number - first);
  }
  return {};
#endif
}

ProbeWord ModemProbe::DetectModem() {
  if (!link_.EnsureLinkOpen()) return link_.OpenRefused() ? ProbeWord::Busy : ProbeWord::None;
  link_.SendCancel();
  PauseShort(loop_);
  received_.DiscardRx();
  link_.WriteText("ate1\r\n");
  PauseShort(loop_);
  const ProbeWord word = AskModel();
  if (word == ProbeWord::Ok) {
    AskUpgrade();
  } else {
    link_.DoubtLogin();
  }
  return word;
}

ProbeWord ModemProbe::AskModel() {
  constexpr std::string_view kCommand = "at+gmm\r\n";
  link_.WriteText(kCommand);
  ProbeWord word = ProbeWord::None;
  std::string answer;
  for (int round = 1; round <= kRounds; ++round) {
    PauseShort(loop_);
    received_.TakeRxInto(answer);
    const std::string upper = UpperCase(answer);
    // Even a modem that rejects the command proves that the line speed is right.
    if (Contains(upper, "ERROR") || Contains(upper, "OK")) {
      state_.terminalModel = TerminalModelFromText(upper);
      main_.applicationTitle = TerminalModelTitle(state_.terminalModel, settings_.config.brand.Get());
      named();
      return ProbeWord::Ok;
    }
    word = answer.empty() ? ProbeWord::None : ProbeWord::CheckSpeed;
    Pause(loop_, 0.1);
    if (round == 3) {
      link_.SendCancel();
      Pause(loop_, 0.2);
      link_.WriteText(kCommand);  // keeps the text received so far
    }
  }
  return word;
}

void ModemProbe::AskUpgrade() {
  link_.WriteText("at+wquilcswvload\r\n");
  std::string answer;
  for (int round = 1; round <= kRounds; ++round) {
    PauseShort(loop_);
    received_.TakeRxInto(answer);
    const std::string upper = UpperCase(answer);
    if (Contains(upper, "ERROR")) continue;
    // Check "PWDISALLOWED" first, because it contains "DISALLOWED".
    const UpgradeOffer offer = Contains(upper, "PWDISALLOWED") ? UpgradeOffer::NoPassword
                               : Contains(upper, "DISALLOWED") ? UpgradeOffer::Refused
                               : Contains(upper, "PROTOCOL")   ? UpgradeOffer::Allowed
                                                               : UpgradeOffer::Unknown;
    upgrade(offer);
    if (offer != UpgradeOffer::Unknown) return;
  }
  upgrade(UpgradeOffer::Unknown);
}

}  // namespace corvex
