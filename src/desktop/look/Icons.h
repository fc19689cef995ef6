#pragma once

#include <QIcon>
#include <QPalette>
#include <string_view>

class QPainter;
class QRectF;

// The program's pictures. They are drawn by code, so they are sharp at every size and density and take their
// colours from the palette.

namespace corvex {

/// Menu icons are numbered 0 to 63, and so are soft key images. Any other number is shown as icon 10 in a
/// menu and as image 2 on a soft key.
inline constexpr int kMenuIcons = 64;

void DrawMenuIcon(QPainter& painter, const QRectF& rect, int number, const QPalette& palette);

/// Draws the picture of a device in a tree. A number without its own picture is shown as a plain device.
void DrawDeviceIcon(QPainter& painter, const QRectF& rect, int number, const QPalette& palette);

/// Draws a picture by name: "logo", "key N" for soft key image N, "device N" for device N, or a name from the
/// table in Icons.cpp. Returns false and draws nothing if the name is unknown or `rect` is empty.
bool DrawPicture(QPainter& painter, const QRectF& rect, std::string_view name, const QPalette& palette);

/// Returns an icon that is drawn when it is first shown. Returns a null icon for an empty name.
QIcon PictureIcon(std::string_view name);

}  // namespace corvex
