#pragma once

#include <QFont>
#include <QPalette>

#include "forms/Control.h"

class QApplication;

// The visual design of the program: custom palettes, light or dark like the system, and a modem screen that
// looks like a lit instrument. It uses palettes, fonts and the shapes of Style. It does not use a style
// sheet, because a style sheet for the whole program would slow down every window.

namespace corvex {

/// Sets the program's style and its light or dark palette. Call once, before the first window is created.
void ApplyTheme(QApplication& application);

bool IsDark(const QPalette& palette);
QPalette MakePalette(bool dark);

/// Returns the palette for a frame with that look and for everything inside the frame. `application` is the
/// program's palette.
QPalette PaletteFor(Look look, const QPalette& application);
/// The same for a frame whose contents are out of date.
QPalette DimmedPaletteFor(Look look, const QPalette& application);

/// Colour of the line around a panel or an enabled key.
QColor BorderColor(const QPalette& palette);
/// Fainter colour for the line around a disabled key and for the inner rim of the modem's screen.
QColor EdgeColor(const QPalette& palette);

/// Returns the colour chosen by the logic, or the theme's colour if the logic leaves the choice to the
/// system: for kWindowColor and kWindowTextColor that of a text field, otherwise that of `role`.
QColor ColorOf(Color color, QPalette::ColorRole role, const QPalette& theme);
/// Returns the colour, made lighter or darker if necessary, so that a text in this colour is readable on
/// `ground`.
QColor ReadableOn(const QColor& ground, QColor color);

/// Converts a form's font. Sizes are in points at 96 DPI regardless of the screen's density, like the
/// rectangles of a form. The names of typewriter fonts give the system's fixed-pitch font; so does
/// `fixedPitch` with a font without a name. Sizes are limited to 1 to 500 pixels.
QFont MakeFont(const Font& font, bool fixedPitch = false);

/// Returns the font, reduced in size until `fits` returns true for it, but not below `smallest` pixels. A
/// font that is already that small is returned unchanged. Finds the largest size that fits, assuming that all
/// sizes below it fit too.
template <typename Fits>
QFont ShrunkToFit(QFont font, int smallest, const Fits& fits) {
  int tooLarge = font.pixelSize();
  if (tooLarge <= smallest || fits(font)) return font;
  // A binary search, because Qt loads a font for each size tried. In a window much wider than high, hundreds
  // of sizes are too large.
  int fitting = smallest;
  while (tooLarge - fitting > 1) {
    font.setPixelSize((fitting + tooLarge) / 2);
    (fits(font) ? fitting : tooLarge) = font.pixelSize();
  }
  font.setPixelSize(fitting);
  return font;
}

}  // namespace corvex
