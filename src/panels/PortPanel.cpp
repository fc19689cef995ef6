#include "panels/PortPanel.h"

#include <algorithm>
#include <array>

#include "base/Text.h"
#include "link/EnumSerialPorts.h"
#include "link/modCommSupport.h"
#include "settings/ProfileFile.h"

namespace corvex {

namespace {

constexpr std::array<std::int32_t, 7> kSpeeds = {2400, 4800, 9600, 19200, 38400, 57600, 115200};
constexpr int kLastSpeed = static_cast<int>(kSpeeds.size()) - 1;
constexpr std::array<std::string_view, 3> kStopBits = {"1", "1.5", "2"};
constexpr std::size_t kSettingsParts = 4;
constexpr std::string_view kPortTip = "Which serial port is the modem connected to?";

std::array<std::string, kSettingsParts> SettingsFields(const SerialControl& comPort) {
  const std::string text = comPort.Settings();
  Fields fields(text, ',');
  std::array<std::string, kSettingsParts> parts;
  for (std::string& part : parts) part = fields.Next();
  return parts;
}

template <typename Table>
const auto& Entry(const Table& table, int index) {
  return table[static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(table.size()) - 1))];
}

/// Returns an address in the form in which it will be read back: on one line, without leading or trailing
/// blanks, and cut to the length of a setting.
std::string CleanAddress(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  return std::string(TrimBlanks(text).substr(0, kMaxProfileValue));
}

}  // namespace

std::int32_t SpeedFromIndex(int index) {
  return Entry(kSpeeds, index);
}

int IndexFromSpeed(std::int32_t speed) {
  const auto found = std::find(kSpeeds.begin(), kSpeeds.end(), speed);
  return found == kSpeeds.end() ? 0 : static_cast<int>(found - kSpeeds.begin());
}

std::string StopBitsFromIndex(int index) {
  return std::string(Entry(kStopBits, index));
}

int IndexFromStopBits(std::string_view text) {
  return text == kStopBits[0] ? 0 : text == kStopBits[1] ? 1 : 2;
}

std::string SettingsField(const SerialControl& comPort, SettingsPart part) {
  return SettingsFields(comPort)[static_cast<std::size_t>(part)];
}

void SetSettingsField(SerialControl& comPort, SettingsPart part, std::string_view text) {
  auto parts = SettingsFields(comPort);
  parts[static_cast<std::size_t>(part)] = text;
  comPort.SetSettings(parts[0] + ',' + parts[1] + ',' + parts[2] + ',' + parts[3]);
}

void PortPanel::Refresh() {
  const int port = comPort_.CommPort();
  const std::string device = DescribePort(ports_, settings_, port);
  window_.txtPort.SetText("com" + NumberText(port));
  window_.txtPort.enabled = PortExists(ports_, settings_, port) != 0;  // greyed if missing, but selectable
  window_.txtPort.toolTip = std::string(kPortTip) + '\n' + device;
  window_.lblDevice.caption = device;
  window_.UpDownPort.value = port;

  const std::int32_t speed = WholePrefix(SettingsField(comPort_, SettingsPart::Speed));
  window_.txtSpeed.SetText(std::to_string(speed));
  window_.UpDownSpeed.value = IndexFromSpeed(speed);

  const std::string dataBits = SettingsField(comPort_, SettingsPart::DataBits);
  window_.txtData.SetText(dataBits);
  window_.UpDownData.value = WholePrefix(dataBits);

  const std::string stopBits = SettingsField(comPort_, SettingsPart::StopBits);
  window_.txtStopBits.SetText(stopBits);
  window_.UpDownStopBits.value = IndexFromStopBits(stopBits);
}

void PortPanel::StepPort() {
  // An open port keeps its number, and Refresh shows that number again.
  comPort_.SetCommPort(static_cast<std::int16_t>(WholePrefix(window_.txtPort.tag)));
  Refresh();
}

void PortPanel::StepSpeed() {
  // Intentional: the arrows can step beyond the table. The position then returns to the last speed.
  if (WholePrefix(window_.txtSpeed.tag) >= kLastSpeed) window_.UpDownSpeed.value = kLastSpeed;
  const std::string speed = std::to_string(SpeedFromIndex(WholePrefix(window_.txtSpeed.tag)));
  window_.txtSpeed.SetText(speed);
  SetSettingsField(comPort_, SettingsPart::Speed, speed);
}

void PortPanel::StepDataBits() {
  window_.txtData.SetText(window_.txtData.tag);
  SetSettingsField(comPort_, SettingsPart::DataBits, window_.txtData.tag);
}

void PortPanel::StepStopBits() {
  const std::string stopBits = StopBitsFromIndex(WholePrefix(window_.txtStopBits.tag));
  window_.txtStopBits.SetText(stopBits);
  SetSettingsField(comPort_, SettingsPart::StopBits, stopBits);
}

void PortPanel::ShowRoute() {
  const auto& config = settings_.config;
  const bool lan = config.lan.Get();
  window_.chkEnableLAN.value = lan;
  window_.txtLanIP.enabled = lan;
  window_.mnuTelnet.visible = lan;
  window_.tabConnect.selected = lan ? 2 : 1;
  window_.chkEnableERB.value = config.erbaccess.Get();
  window_.txtLanIP.SetText(config.lanaddress.Get());
}

void PortPanel::StoreErb() {
  settings_.config.erbaccess.Set(window_.chkEnableERB.value);
}

void PortPanel::StoreRoute() {
  settings_.config.lan.Set(window_.chkEnableLAN.value);
  settings_.config.lanaddress.Set(CleanAddress(window_.txtLanIP.Text()));
  StoreErb();
}

}  // namespace corvex
