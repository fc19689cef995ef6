#include "unit/ImageMaker.h"

#include <algorithm>
#include <random>
#include <vector>

#include "unit/Crc16.h"

namespace corvex::simulation {
namespace {

constexpr int kCatalog = 160;
constexpr int kEnd = 201;

std::string LowFirst(std::uint32_t number, int bytes) {
  std::string text;
  for (; bytes > 0; --bytes, number >>= 8) text += static_cast<char>(number);
  return text;
}

struct Segment {
  int number;
  std::string data;

  int Type() const { return number / 2 % 2 == 0 ? 4 : 5; }
  int Memory() const { return number % 2; }
  int Page() const { return Type() == 5 ? number % 7 : 0; }
  /// The load address in words of the memory; in bytes for a segment of type 4.
  std::uint32_t Base() const {
    return Type() == 4 ? 0x10000u * static_cast<std::uint32_t>(number + 1) : 0x400;
  }
  std::uint32_t Address() const { return Type() == 4 ? Base() : Base() * (Memory() == 1 ? 3 : 2); }

  std::string Entry() const {
    Crc16 crc;
    crc.Add(data);
    const std::string common =
        LowFirst(static_cast<std::uint32_t>(Type()), 1) + LowFirst(static_cast<std::uint32_t>(number), 1) +
        LowFirst(static_cast<std::uint32_t>(Memory()), 1) +
        LowFirst(static_cast<std::uint32_t>(data.size()), 4) + LowFirst(crc.value(), 4) + LowFirst(0, 2);
    if (Type() == 4) return common + LowFirst(Base(), 4) + LowFirst(0, 4);
    return common + LowFirst(0, 4) + LowFirst(Base(), 2) + LowFirst(static_cast<std::uint32_t>(Page()), 1) +
           LowFirst(0, 1);
  }
};

std::string Block(int command, int type, int id, int page, std::uint32_t address, const std::string& data) {
  std::string bytes{static_cast<char>(type), static_cast<char>(id), static_cast<char>(page)};
  bytes += LowFirst(address, 4) + LowFirst(static_cast<std::uint32_t>(data.size()), 2) + LowFirst(0, 2);
  return bytes + static_cast<char>(command) + data;
}

}  // namespace

std::string MakeImage(const ImageOptions& options) {
  std::minstd_rand random(options.seed);
  std::vector<Segment> segments;
  for (int number = 0; number < options.segments; ++number) {
    const auto left = static_cast<std::uint32_t>(options.segments - number);
    std::uint32_t done = 0;
    for (const Segment& segment : segments) done += static_cast<std::uint32_t>(segment.data.size());
    Segment segment{number,
                    std::string((options.bytes - std::min(options.bytes, done)) / left / 2 * 2, '\0')};
    for (char& c : segment.data) c = static_cast<char>(random() >> 8);
    segments.push_back(std::move(segment));
  }
  std::string catalog = LowFirst(static_cast<std::uint32_t>(options.segments), 1) +
                        LowFirst(static_cast<std::uint32_t>(options.version), 4) + LowFirst(0, 1) +
                        LowFirst(0, 4);
  for (const Segment& segment : segments) catalog += segment.Entry();
  std::string image = Block(kCatalog, 0, 0, 0, 0, catalog);
  const auto size = static_cast<std::size_t>(options.blockSize);
  for (const Segment& segment : segments) {
    for (std::size_t at = 0; at < segment.data.size(); at += size) {
      image += Block(segment.Memory() == 1 ? 175 : 176, segment.Type(), segment.number, segment.Page(),
                     segment.Address() + static_cast<std::uint32_t>(at), segment.data.substr(at, size));
    }
  }
  return image + Block(kEnd, 0, 0, 0, 0, "");
}

}  // namespace corvex::simulation
