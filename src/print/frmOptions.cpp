#include "print/frmOptions.h"

#include <initializer_list>
#include <string>

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "settings/SettingFonts.h"

namespace corvex {

namespace {

constexpr std::string_view kNoPrinters = "No printers configured";

std::string ScreenFontCaption(const Font& font) {
  return font.name + " (" + std::to_string(static_cast<int>(font.size)) + ")";
}

std::string PrinterFontCaption(const Font& font) {
  std::string caption = ScreenFontCaption(font);
  if (font.bold) caption += ",bold";
  if (font.italic) caption += ",italics";
  if (font.underline) caption += ",underlined";
  return caption;
}

template <typename Section>
void StoreFont(const Section& section, const Font& font) {
  section.font.Set(font.name);
  section.fontsize.Set(static_cast<std::int32_t>(font.size));
  section.bold.Set(font.bold);
  section.italic.Set(font.italic);
  section.underline.Set(font.underline);
}

}  // namespace

frmOptions::frmOptions(Form& owner, const Platform& platform, const SettingsStore& settings)
    : Form(platform.loop, platform.windows, "frmOptions", &owner), platform_(platform), settings_(settings) {
  caption = "Printout from modem";
  fixedSize = true;
  defaultButton = &cmdOK;
  cancelButton = &Command3;
  ConnectEvents();
  Load();
}

void frmOptions::ConnectEvents() {
  const auto choose = [](auto& options, std::size_t chosen) {
    options[1 - chosen].value = false;
    options[chosen].value = true;
    options[chosen].click();
    options[chosen].SetFocus();
  };
  for (std::size_t i = 0; i < optGen.size(); ++i) {
    optGen[i].click = [this] { ApplyActionChoice(); };
    lblGen[i].click = [this, choose, i] { choose(optGen, i); };
    lblGen[2 + i].click = [this, choose, i] { choose(Option1, i); };
  }
  tbsOptions.click = [this] { ShowPage(); };
  // A second click may already be queued when the first one opens its dialog box.
  const auto unlessAsking = [this](auto action) {
    return [this, action] {
      if (!asking_) action();
    };
  };
  cmdScreenFont.click = unlessAsking([this] { ChooseScreenFont(); });
  cmdFont.click = unlessAsking([this] { ChoosePrinterFont(); });
  cmdPrinter.click = unlessAsking([this] { ChoosePrinter(); });
  Command1.click = unlessAsking([this] { BrowsePath(); });
  const auto close = unlessAsking([this] { visible = false; });
  cmdOK.click = unlessAsking([this] {
    Store();
    visible = false;
  });
  Command3.click = close;
  queryUnload = close;
  keyDown = [this](KeyEvent& key) {
    constexpr int kTab = 9;
    if (key.keyCode != kTab || !key.ctrl || key.alt || key.shift) return;
    key.handled = true;
    tbsOptions.selected = tbsOptions.selected % static_cast<int>(tbsOptions.captions.size()) + 1;
    ShowPage();
  };
}

void frmOptions::Load() {
  constexpr Twips kWidth = 7290;
  constexpr Twips kHeight = 6600;
  Centre(windows().WorkArea(), kWidth, kHeight);
  ShowPage();
  const auto& printer = settings_.printer;
  ShowPath(printer.path.Get());
  lblFont.caption = PrinterFontCaption(SettingFont(printer));
  lblScreenFont.caption = ScreenFontCaption(SettingFont(settings_.screen));
  optGen[0].value = printer.always.IsFile();
  optGen[1].value = printer.always.IsPrint();
  ApplyActionChoice();
  const bool append = printer.fileuse.IsAppend();
  Option1[append ? 1 : 0].value = true;
  chosenFont_ = optGen[0].value ? SettingFont(settings_.screen) : SettingFont(printer);
  const bool hasPrinter = platform_.printers.Count() > 0;
  lblPrinter.caption = hasPrinter ? platform_.printers.DefaultName() : std::string(kNoPrinters);
  cmdPrinter.enabled = hasPrinter;
  cmdFont.enabled = hasPrinter;
  optGen[optGen[1].value ? 1 : 0].SetFocus();
}

void frmOptions::ApplyActionChoice() {
  if (!optGen[0].value && !optGen[1].value) return;  // the settings contain neither choice
  const bool screen = optGen[0].value;
  using Group = std::initializer_list<Control*>;
  for (Control* control : Group{&lblScreenFont, &cmdScreenFont, &frmPath, &Label1, &lblGen[2], &lblGen[3],
                                &Option1[0], &Option1[1]}) {
    control->enabled = screen;
  }
  for (Control* control : Group{&lblPrinter, &lblFont, &cmdPrinter, &cmdFont, &Frame1}) {
    control->enabled = !screen;
  }
}

/// Shows the selected tab's page at the left edge of the strip and moves the other pages off screen.
void frmOptions::ShowPage() {
  constexpr Twips kAway = -20'000;
  for (std::size_t i = 0; i < picOptions.size(); ++i) {
    Frame& page = picOptions[i];
    const bool selected = static_cast<int>(i) + 1 == tbsOptions.selected;
    Rect place = page.rect;
    place.left = selected ? tbsOptions.rect.Get().left : kAway;
    page.rect = place;
    page.enabled = selected;
    page.visible = selected;
  }
}

void frmOptions::ShowPath(const std::string& path) {
  lblPrintPath.caption = path;
  lblPrintPath.toolTip = path;  // the path may be too long for the label
}

void frmOptions::ChooseScreenFont() {
  if (ChooseFont(SettingFont(settings_.screen), false))
    lblScreenFont.caption = ScreenFontCaption(chosenFont_);
}

void frmOptions::ChoosePrinterFont() {
  if (ChooseFont(SettingFont(settings_.printer), true)) lblFont.caption = PrinterFontCaption(chosenFont_);
}

/// The font dialog starts with the stored name and size, even if another font was chosen since. Returns false
/// and changes nothing if the user cancels.
bool frmOptions::ChooseFont(const Font& stored, bool forPrinter) {
  Font font = chosenFont_;
  font.name = stored.name;
  font.size = stored.size;
  const ScopedFlag asking(asking_);
  const auto chosen = platform_.dialogs.ChooseFont(font, forPrinter, this);
  if (!chosen) return false;
  chosenFont_ = *chosen;
  chosenFont_.size = RoundHalfEven(chosen->size);  // sizes are stored as whole numbers
  return true;
}

void frmOptions::ChoosePrinter() {
  const ScopedFlag asking(asking_);
  if (platform_.printers.Count() == 0) {
    platform_.dialogs.MessageBox(kNoPrinters);
    return;
  }
  platform_.printers.ChooseDefault(this);
  lblPrinter.caption = platform_.printers.DefaultName();
}

/// Shows the chosen path but does not store it. Intentional: the stored path is the file that the print view
/// saved last.
void frmOptions::BrowsePath() {
  const ScopedFlag asking(asking_);
  const auto path = platform_.dialogs.SaveFile({.title = "Print to text file",
                                                .filter = "Text Files | *.txt",
                                                .start = lblPrintPath.caption,
                                                .owner = this});
  if (path) ShowPath(*path);
}

void frmOptions::Store() {
  const auto& printer = settings_.printer;
  if (optGen[0].value) {
    StoreFont(settings_.screen, chosenFont_);
    printer.always.SetFile();
  } else if (optGen[1].value) {
    StoreFont(printer, chosenFont_);
    printer.always.SetPrint();
  }
  if (Option1[1].value) {
    printer.fileuse.SetAppend();
  } else {
    printer.fileuse.SetNew();
  }
}

}  // namespace corvex
