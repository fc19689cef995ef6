#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace corvex {

/// A number in the order of the image file: the least significant byte first.
using TwoBytes = std::array<std::uint8_t, 2>;
using FourBytes = std::array<std::uint8_t, 4>;

/// What a block of an image is. Other values can occur in a file.
namespace block_command {
inline constexpr std::uint8_t kPadding = 85;
inline constexpr std::uint8_t kCatalog = 160;
inline constexpr std::uint8_t kMemory1 = 175;  ///< Data for memory type 1.
inline constexpr std::uint8_t kMemory0 = 176;  ///< Data for memory type 0.
inline constexpr std::uint8_t kNote = 200;
inline constexpr std::uint8_t kEnd = 201;
}  // namespace block_command

/// The types of a segment.
inline constexpr std::uint8_t kSegmentCp = 4;
inline constexpr std::uint8_t kSegmentSp = 5;

/// One block of a target image.
struct ImageBlock {
  static constexpr std::int32_t kMaxData = 25600;  ///< Bytes.
  static constexpr std::size_t kHeaderSize = 12;   ///< Bytes in the file.

  std::uint16_t blockSum = 0;  ///< The sum of all data bytes modulo 256.
  bool valid = false;          ///< The slot is filled.
  std::int32_t length = 0;     ///< `dataLength` as a signed number.
  std::uint8_t segmentType = 0;
  std::uint8_t segmentId = 0;
  std::uint8_t pageId = 0;
  FourBytes address{};
  TwoBytes dataLength{};
  TwoBytes reserved{};
  std::uint8_t command = 0;
  std::string data;  ///< `length` bytes; empty if `length` is negative.
};

/// The head of the catalogue. The PC does not know what its fields mean.
struct CatalogHead {
  std::uint8_t segmentCount = 0;
  FourBytes catalogLongA{};
  std::uint8_t catalogByteB = 0;
  FourBytes catalogLongC{};
};

/// An entry of the catalogue. Fields whose names end in a letter are forwarded to the modem or dropped; the
/// PC does not know what they mean.
struct CatalogEntry {
  std::uint8_t segmentType = 0;
  std::uint8_t segmentId = 0;
  FourBytes entryLongA{};
  FourBytes entryLongB{};
  std::uint8_t memoryType = 0;
  std::uint8_t entryByteC = 0;
  std::uint8_t entryByteD = 0;
  // Segment type 4 only.
  FourBytes baseAddress{};  ///< In bytes.
  FourBytes entryLongE{};
  // Segment type 5 only.
  FourBytes entryLongF{};
  TwoBytes baseWord{};  ///< In words of the memory type.
  std::uint8_t pageId = 0;
  std::uint8_t entryByteG = 0;
};

/// Returns the bytes as a signed 16-bit number.
constexpr std::int16_t WordFromBytes(TwoBytes bytes) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8));
}

/// Returns the four bytes of a number. Intentional: a number below 0 becomes 0.
constexpr FourBytes LongToBytes(std::int32_t value) {
  const std::uint32_t bits = value > 0 ? static_cast<std::uint32_t>(value) : 0;
  return {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8),
          static_cast<std::uint8_t>(bits >> 16), static_cast<std::uint8_t>(bits >> 24)};
}

}  // namespace corvex
