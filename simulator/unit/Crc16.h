#pragma once

#include <cstdint>
#include <string_view>

namespace corvex::simulation {

/// The CRC-16 with which the unit checks its segments: reflected polynomial 0xA001, initial value 0.
class Crc16 {
 public:
  void Add(std::string_view bytes) {
    for (const char c : bytes) {
      value_ = static_cast<std::uint16_t>(value_ ^ static_cast<unsigned char>(c));
      for (int bit = 0; bit < 8; ++bit) {
        value_ = static_cast<std::uint16_t>((value_ >> 1) ^ (value_ & 1 ? 0xA001 : 0));
      }
    }
  }
  std::uint16_t value() const { return value_; }

 private:
  std::uint16_t value_ = 0;
};

}  // namespace corvex::simulation
