#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace corvex {

/// A length on the screen: a twentieth of a point, 15 to the pixel at 96 DPI.
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

struct Font {
  std::string name = {};  ///< Empty: the font of the system.
  double size = 8;        ///< In points.
  bool bold = false;
  bool italic = false;
  bool underline = false;
  friend bool operator==(const Font&, const Font&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Font& f) { return out << f.name << ' ' << f.size; }
};

}  // namespace corvex
