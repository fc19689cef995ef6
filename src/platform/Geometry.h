#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace corvex {

/// A length on the screen in twips. One twip is a twentieth of a point; a pixel at 96 DPI has 15 twips.
using Twips = std::int32_t;

struct Rect {
  Twips left = 0;
  Twips top = 0;
  Twips width = 0;
  Twips height = 0;
  friend bool operator==(const Rect&, const Rect&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Rect& r) {
    return out << '{' << r.left << ", " << r.top << ", " << r.width << ", " << r.height << '}';
  }
};

/// The two end points of a straight line, relative to its container.
struct LineEnds {
  Twips x1 = 0;
  Twips y1 = 0;
  Twips x2 = 0;
  Twips y2 = 0;
  friend bool operator==(const LineEnds&, const LineEnds&) = default;
  friend std::ostream& operator<<(std::ostream& out, const LineEnds& l) {
    return out << '{' << l.x1 << ", " << l.y1 << ", " << l.x2 << ", " << l.y2 << '}';
  }
};

/// A colour. The low 24 bits hold blue, green and red, from the high byte to the low byte (0xBBGGRR). If the
/// highest bit is set, the value is the number of a system colour instead.
using Color = std::uint32_t;
inline constexpr Color kWindowColor = 0x80000005;
inline constexpr Color kWindowTextColor = 0x80000008;

struct Font {
  std::string name = {};  ///< Empty: the system's default font.
  double size = 8;        ///< In points.
  bool bold = false;
  bool italic = false;
  bool underline = false;
  friend bool operator==(const Font&, const Font&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Font& f) { return out << f.name << ' ' << f.size; }
};

}  // namespace corvex
