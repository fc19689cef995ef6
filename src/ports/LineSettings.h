#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvex {

enum class Parity { None, Even, Odd, Mark, Space };
enum class StopBits { One, OneAndHalf, Two };

/// The parameters of a serial line. `speed` is in bits per second.
struct LineSettings {
  std::int32_t speed = 9600;
  Parity parity = Parity::None;
  int dataBits = 8;
  StopBits stopBits = StopBits::One;
  bool xonXoff = false;
  bool rtsCts = false;
};

/// Parses line parameters such as "115200,n,8,1"; see SerialControl::SetSettings. Returns none if the text is
/// invalid. Handshaking is left off.
std::optional<LineSettings> ParseLineSettings(std::string_view text);

}  // namespace corvex
