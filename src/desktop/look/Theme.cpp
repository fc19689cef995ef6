#include "desktop/look/Theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "desktop/look/QtText.h"
#include "desktop/look/Style.h"

namespace corvex {

namespace {

struct Colors {
  QRgb window, base, alternate, text, button, muted, accent, onAccent, tip, onTip;
};

constexpr Colors kLight{0xFFF1F3F4, 0xFFFFFFFF, 0xFFE8ECEE, 0xFF16212A, 0xFFE4E9EC,
                        0xFF68737B, 0xFF0A6E8A, 0xFFFFFFFF, 0xFF22313C, 0xFFF4F7F8};
constexpr Colors kDark{0xFF1F262B, 0xFF161C20, 0xFF262F35, 0xFFE3EAED, 0xFF303A41,
                       0xFF85929A, 0xFF37A6C4, 0xFF06181F, 0xFFE3EAED, 0xFF16212A};
// The modem's screen. Light: dark text on a lit greenish grey. Dark: bright text on near black.
constexpr Colors kLightScreen{0xFFE3EFE6, 0xFFE3EFE6, 0xFFD6E6DB, 0xFF0B2A1D, 0xFFD3E2D8,
                              0xFF5E7A6B, 0xFF0A6E8A, 0xFFFFFFFF, 0xFF22313C, 0xFFF4F7F8};
constexpr Colors kDarkScreen{0xFF0C1714, 0xFF0C1714, 0xFF13231E, 0xFFB9F2D4, 0xFF1B2E28,
                             0xFF6E9884, 0xFF37A6C4, 0xFF06181F, 0xFFE3EAED, 0xFF16212A};
// Popups: amber, the warning colour of instruments.
constexpr Colors kLightPopUp{0xFFFFF4D6, 0xFFFFF4D6, 0xFFFFEDBF, 0xFF33270A, 0xFFF7E3AE,
                             0xFF7B6A3B, 0xFFB97A00, 0xFFFFFFFF, 0xFF22313C, 0xFFF4F7F8};
constexpr Colors kDarkPopUp{0xFF3A2F14, 0xFF3A2F14, 0xFF443818, 0xFFFFE9B0, 0xFF54451F,
                            0xFFB5A26C, 0xFFE0A93A, 0xFF1F1703, 0xFFE3EAED, 0xFF16212A};

QPalette FromColors(const Colors& c) {
  QPalette palette{QColor(c.button), QColor(c.window)};
  palette.setColor(QPalette::WindowText, c.text);
  palette.setColor(QPalette::Base, c.base);
  palette.setColor(QPalette::AlternateBase, c.alternate);
  palette.setColor(QPalette::Text, c.text);
  palette.setColor(QPalette::ButtonText, c.text);
  palette.setColor(QPalette::PlaceholderText, c.muted);
  palette.setColor(QPalette::Highlight, c.accent);
  palette.setColor(QPalette::HighlightedText, c.onAccent);
  palette.setColor(QPalette::Link, c.accent);
  palette.setColor(QPalette::ToolTipBase, c.tip);
  palette.setColor(QPalette::ToolTipText, c.onTip);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::Link}) {
    palette.setColor(QPalette::Disabled, role, c.muted);
  }
  palette.setColor(QPalette::Disabled, QPalette::Highlight, c.alternate);
  palette.setColor(QPalette::Disabled, QPalette::HighlightedText, c.muted);
  return palette;
}

QColor WithAlpha(QColor color, float alpha) {
  color.setAlphaF(alpha);
  return color;
}

/// Returns the relative luminance of a colour, from 0 for black to 1 for white.
double Luminance(const QColor& color) {
  const auto linear = [](double v) { return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

bool IsTypewriter(const QString& name) {
  return name.startsWith(u"Courier", Qt::CaseInsensitive) || name.contains(u"Mono", Qt::CaseInsensitive) ||
         name.compare(u"Fixedsys", Qt::CaseInsensitive) == 0 ||
         name.compare(u"Terminal", Qt::CaseInsensitive) == 0;
}

}  // namespace

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

QPalette MakePalette(bool dark) {
  return FromColors(dark ? kDark : kLight);
}

void ApplyTheme(QApplication& application) {
  const bool dark = IsDark(QApplication::palette());
  QApplication::setStyle(new Style);
  QApplication::setPalette(MakePalette(dark));
  QToolTip::setPalette(MakePalette(dark));
  application.setEffectEnabled(Qt::UI_AnimateMenu, false);
}

QPalette PaletteFor(Look look, const QPalette& application) {
  const bool dark = IsDark(application);
  switch (look) {
    case Look::Screen:
      return FromColors(dark ? kDarkScreen : kLightScreen);
    case Look::PopUp:
      return FromColors(dark ? kDarkPopUp : kLightPopUp);
    default:
      break;
  }
  return application;
}

QPalette DimmedPaletteFor(Look look, const QPalette& application) {
  QPalette palette = PaletteFor(look, application);
  const QColor pale = palette.color(QPalette::PlaceholderText);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::Link, QPalette::Highlight}) {
    palette.setColor(role, pale);
  }
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
    palette.setColor(role, application.color(QPalette::Window));  // the screen looks unlit
  }
  return palette;
}

QColor BorderColor(const QPalette& palette) {
  return WithAlpha(palette.color(QPalette::Active, QPalette::WindowText), 0.30F);
}

QColor EdgeColor(const QPalette& palette) {
  return WithAlpha(palette.color(QPalette::Active, QPalette::WindowText), 0.14F);
}

QColor ColorOf(Color color, QPalette::ColorRole role, const QPalette& theme) {
  if (color == kWindowColor) return theme.color(QPalette::Base);
  if (color == kWindowTextColor) return theme.color(QPalette::Text);
  if (color > 0xFFFFFF) return theme.color(role);
  return QColor(static_cast<int>(color & 0xFF), static_cast<int>(color >> 8 & 0xFF),
                static_cast<int>(color >> 16));
}

QColor ReadableOn(const QColor& ground, QColor color) {
  constexpr double kLeastContrast = 4.5;
  const double behind = Luminance(ground);
  const bool dark = behind < 0.18;  // where black and white text have the same contrast
  for (int step = 0; step < 100; ++step) {
    const double text = Luminance(color);
    const double contrast = (std::max(text, behind) + 0.05) / (std::min(text, behind) + 0.05);
    if (contrast >= kLeastContrast) break;
    const float lightness = color.lightnessF() + (dark ? 0.01F : -0.01F);
    color.setHslF(color.hslHueF(), color.hslSaturationF(), std::clamp(lightness, 0.0F, 1.0F));
  }
  return color;
}

QFont MakeFont(const Font& font, bool fixedPitch) {
  const QString name = ToQt(font.name);
  QFont made = fixedPitch || IsTypewriter(name) ? QFontDatabase::systemFont(QFontDatabase::FixedFont)
                                                : QFont(QApplication::font());
  if (!name.isEmpty() && !IsTypewriter(name)) made.setFamily(name);
  // The size can be any number from the settings file. This limit is more than any row of a screen has room
  // for.
  constexpr double kMostPixels = 500;
  made.setPixelSize(qRound(std::clamp(font.size * 96 / 72, 1.0, kMostPixels)));
  made.setBold(font.bold);
  made.setItalic(font.italic);
  made.setUnderline(font.underline);
  return made;
}

}  // namespace corvex
