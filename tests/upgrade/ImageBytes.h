#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "upgrade/ImageBlock.h"

namespace corvex {

/// Returns a number as bytes of an image file: the least significant byte first.
inline std::string LowFirst(std::uint32_t number, int bytes) {
  std::string text;
  for (; bytes > 0; --bytes, number >>= 8) text += static_cast<char>(number);
  return text;
}

/// The header of a block and its data, as they are in an image file.
struct BlockBytes {
  int command = block_command::kMemory0;
  int type = kSegmentCp;
  int id = 1;
  int page = 0;
  std::uint32_t address = 0;
  std::string data = {};
  int length = -1;  ///< The length field. -1: the size of `data`.

  std::string Text() const {
    const auto size =
        length == -1 ? static_cast<std::uint32_t>(data.size()) : static_cast<std::uint32_t>(length);
    return std::string{static_cast<char>(type), static_cast<char>(id), static_cast<char>(page)} +
           LowFirst(address, 4) + LowFirst(size, 2) + LowFirst(0, 2) + static_cast<char>(command) + data;
  }
};

/// An entry of a catalogue. The fields that the program only forwards get bytes that differ from each other.
struct EntryBytes {
  int type = kSegmentCp;
  int id = 1;
  int memory = 0;
  std::uint32_t base = 0;  ///< In bytes for type 4, in words for type 5.
  int page = 0;

  std::string Text() const {
    const std::string common =
        std::string{static_cast<char>(type), static_cast<char>(id), static_cast<char>(memory)} +
        "\x11\x12\x13\x14\x21\x22\x23\x24\x31\x32";
    if (type == kSegmentCp) return common + LowFirst(base, 4) + "\x41\x42\x43\x44";
    if (type == kSegmentSp)
      return common + "\x51\x52\x53\x54" + LowFirst(base, 2) + static_cast<char>(page) + '\x61';
    return common;
  }
};

inline std::string CatalogBytes(const std::vector<EntryBytes>& entries) {
  std::string data = std::string{static_cast<char>(entries.size())} + "\x01\x02\x03\x04\x05\x06\x07\x08\x09";
  for (const EntryBytes& entry : entries) data += entry.Text();
  return BlockBytes{.command = block_command::kCatalog, .type = 0, .id = 0, .data = data}.Text();
}

}  // namespace corvex
