#pragma once

#include <QIcon>
#include <QPalette>
#include <string_view>

class QPainter;
class QRectF;

// The program's pictures, drawn by code: sharp at every size and density, and in the colours of the palette
// that they are shown on.

namespace corvex {

/// Menu icons, and the images of soft keys, are numbered 0 to 63. Any other number is shown as 10, and as 2
/// on a key.
inline constexpr int kMenuIcons = 64;

void DrawMenuIcon(QPainter& painter, const QRectF& rect, int number, const QPalette& palette);

/// A picture by name: "logo", "key N" for the image of a soft key, or one of the table in Icons.cpp. False,
/// with nothing drawn, for any other, and where there is no room.
bool DrawPicture(QPainter& painter, const QRectF& rect, std::string_view name, const QPalette& palette);

/// An icon that is drawn when it is first shown; null for no name.
QIcon PictureIcon(std::string_view name);

}  // namespace corvex
