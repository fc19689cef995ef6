#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// Needs windows.h first.
#include <setupapi.h>

#include <array>
#include <string_view>

#include "base/Text.h"
#include "ports/SystemSerialPorts.h"

namespace corvex {

namespace {

constexpr std::wstring_view kPrefix = L"\\\\.\\";

std::wstring Wide(std::string_view latin1) {
  std::wstring text;
  for (const char c : latin1) text += static_cast<wchar_t>(static_cast<unsigned char>(c));
  return text;
}

/// Converts to Latin-1; other characters become "?".
std::string Latin1(std::wstring_view wide) {
  std::string text;
  for (const wchar_t c : wide) text += c < 0x100 ? static_cast<char>(c) : '?';
  return text;
}

/// Returns a text value of a registry key; empty if it is missing or not a text.
std::wstring TextValue(HKEY key, const wchar_t* name) {
  std::array<wchar_t, 256> text{};
  DWORD size = sizeof text;
  if (RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, text.data(), &size) != ERROR_SUCCESS)
    return {};
  return text.data();
}

/// Returns the driver's name for the port, such as "USB Serial Port (COM3)".
std::string FriendlyName(const std::wstring& port) {
  // The device class "Ports (COM & LPT)".
  constexpr GUID kPorts = {0x4d36e978, 0xe325, 0x11ce, {0xbf, 0xc1, 0x08, 0x00, 0x2b, 0xe1, 0x03, 0x18}};
  const HDEVINFO devices = SetupDiGetClassDevsW(&kPorts, nullptr, nullptr, DIGCF_PRESENT);
  if (devices == INVALID_HANDLE_VALUE) return {};
  std::string name;
  SP_DEVINFO_DATA device = {};
  device.cbSize = sizeof device;
  for (DWORD i = 0; name.empty() && SetupDiEnumDeviceInfo(devices, i, &device); ++i) {
    const HKEY key = SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_QUERY_VALUE);
    if (key == INVALID_HANDLE_VALUE) continue;
    if (EqualNoCase(Latin1(TextValue(key, L"PortName")), Latin1(port))) {
      std::array<wchar_t, 256> text{};
      SetupDiGetDeviceRegistryPropertyW(devices, &device, SPDRP_FRIENDLYNAME, nullptr,
                                        reinterpret_cast<BYTE*>(text.data()), sizeof text - sizeof(wchar_t),
                                        nullptr);
      name = Latin1(text.data());
    }
    RegCloseKey(key);
  }
  SetupDiDestroyDeviceInfoList(devices);
  return name;
}

}  // namespace

std::vector<std::string> SystemSerialPorts::Devices() const {
  std::vector<std::string> devices;
  HKEY list = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_QUERY_VALUE, &list) !=
      ERROR_SUCCESS) {
    return devices;
  }
  std::array<wchar_t, 256> name{};
  for (DWORD i = 0, size = name.size();
       RegEnumValueW(list, i, name.data(), &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, size = name.size()) {
    const std::wstring port = TextValue(list, name.data());
    if (!port.empty()) devices.push_back(Latin1(port));
  }
  RegCloseKey(list);
  return devices;
}

PortInfo SystemSerialPorts::Probe(const std::string& device) const {
  std::wstring name = Wide(device);
  if (name.starts_with(kPrefix)) name.erase(0, kPrefix.size());
  std::array<wchar_t, 1024> target{};
  if (name.empty() || QueryDosDeviceW(name.c_str(), target.data(), target.size()) == 0) return {};
  return {.state = PortState::Usable, .description = FriendlyName(name), .group = {}};
}

}  // namespace corvex

#endif
