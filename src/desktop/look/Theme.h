#pragma once

#include <QFont>
#include <QPalette>

#include "forms/Control.h"

class QApplication;

// The one visual language of the program: palettes of our own, light or dark as the system is, and the
// modem's screen like a well-lit instrument. Palettes, fonts and the few shapes of Style: a style sheet over
// the whole program would cost at every window.

namespace corvex {

/// Light or dark, style and palette for the program. Called once, before the first window.
void ApplyTheme(QApplication& application);

bool IsDark(const QPalette& palette);
QPalette MakePalette(bool dark);

/// The palette of a frame of that look and of all within it, on top of the program's.
QPalette PaletteFor(Look look, const QPalette& application);
/// The same for a frame whose contents are not current.
QPalette DimmedPaletteFor(Look look, const QPalette& application);

/// Line around a panel or a key, and the fainter one around what is not in use.
QColor BorderColor(const QPalette& palette);
QColor EdgeColor(const QPalette& palette);

/// A form's font. Sizes are in points at 96 DPI whatever the screen's density, as the rectangles are; names
/// of typewriter fonts and `fixedPitch` give the system's fixed-pitch font.
QFont MakeFont(const Font& font, bool fixedPitch = false);

/// The font, or a smaller one for which `fits` holds, the largest by all that can be told from sizes between;
/// the one of `smallest` pixels if it holds for none.
template <typename Fits>
QFont ShrunkToFit(QFont font, int smallest, const Fits& fits) {
  int tooLarge = font.pixelSize();
  if (tooLarge <= smallest || fits(font)) return font;
  // By halves: each size has a font loaded, and in a window that is far wider than high hundreds are too
  // large.
  int fitting = smallest;
  while (tooLarge - fitting > 1) {
    font.setPixelSize((fitting + tooLarge) / 2);
    (fits(font) ? fitting : tooLarge) = font.pixelSize();
  }
  font.setPixelSize(fitting);
  return font;
}

}  // namespace corvex
