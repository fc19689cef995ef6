#pragma once

#include <array>

#include "forms/Controls.h"
#include "platform/Platform.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// The options dialog for the modem's print jobs: their destination and their fonts. Shown modally. Only Save
/// stores the choices, except for the system's default printer, which changes immediately.
class frmOptions : public Form {
 public:
  frmOptions(Form& owner, const Platform& platform, const SettingsStore& settings);
  ~frmOptions() override { Withdraw(); }

  TabStrip tbsOptions{
      *this,
      {.name = "tbsOptions", .rect = {90, 90, kPageWidth, 360}, .toolTip = "General printing options"},
      {"General"}};
  /// One page for each tab. There is only one tab.
  std::array<Frame, 1> picOptions{
      {{*this, {.name = "picOptions", .index = 0, .rect = {90, 480, kPageWidth, 5190}}}}};

  Frame Frame2{picOptions[0],
               {.name = "Frame2", .rect = {60, 30, kGroupWidth, 960}, .caption = "Default print action"}};
  std::array<OptionButton, 2> optGen{{
      {Frame2, OptionDesign("optGen", 0, 270, kToScreen)},
      {Frame2, OptionDesign("optGen", 1, 570, kToPrinter)},
  }};

  Frame frmPath{
      picOptions[0],
      {.name = "frmPath", .rect = {60, 1080, kGroupWidth, 2580}, .caption = "Print to screen settings"}};
  Label Label1{frmPath,
               {.name = "Label1",
                .rect = {120, 270, 6660, 300},
                .caption = "Printout is sent to a desktop window with options to save and print."}};
  Button cmdScreenFont{frmPath,
                       {.name = "cmdScreenFont",
                        .rect = {120, 630, 1200, 390},
                        .caption = "Font...",
                        .accessible = "% for the window"}};
  Label lblScreenFont{frmPath, ValueDesign("lblScreenFont", 630, "Font of the window: %")};
  std::array<OptionButton, 2> Option1{{
      {frmPath, OptionDesign("Option1", 0, 1110, kClears)},
      {frmPath, OptionDesign("Option1", 1, 1530, kAdds)},
  }};
  Button Command1{frmPath, {.name = "Command1", .rect = {120, 2010, 1200, 390}, .caption = "Browse..."}};
  Label lblPrintPath{frmPath, ValueDesign("lblPrintPath", 2010, "File: %")};

  Frame Frame1{picOptions[0],
               {.name = "Frame1", .rect = {60, 3750, kGroupWidth, 1380}, .caption = "Printer settings"}};
  Button cmdPrinter{Frame1, {.name = "cmdPrinter", .rect = {120, 300, 1200, 390}, .caption = "Printer..."}};
  Label lblPrinter{Frame1, ValueDesign("lblPrinter", 300, "Printer: %")};
  Button cmdFont{Frame1,
                 {.name = "cmdFont",
                  .rect = {120, 810, 1200, 390},
                  .caption = "Font...",
                  .accessible = "% for the printer"}};
  Label lblFont{Frame1, ValueDesign("lblFont", 810, "Font on paper: %")};

  /// The texts of the option buttons: first those of optGen, then those of Option1.
  std::array<Label, 4> lblGen{{
      {Frame2, OptionLabelDesign(0, 270, kToScreen)},
      {Frame2, OptionLabelDesign(1, 570, kToPrinter)},
      {frmPath, OptionLabelDesign(2, 1110, kClears)},
      {frmPath, OptionLabelDesign(3, 1530, kAdds)},
  }};

  Button cmdOK{*this, {.name = "cmdOK", .rect = {4500, 5790, 1200, 390}, .caption = "Save"}};
  Button Command3{*this, {.name = "Command3", .rect = {5820, 5790, 1200, 390}, .caption = "Quit"}};

 private:
  static constexpr Twips kPageWidth = 7020;
  static constexpr Twips kGroupWidth = 6900;
  static constexpr std::string_view kToScreen = "Print to screen";
  static constexpr std::string_view kToPrinter = "Print to default windows printer";
  static constexpr std::string_view kClears =
      "Clear this screen area automatically each time a new print job is performed";
  static constexpr std::string_view kAdds = "Concatenate print jobs";
  static Design OptionDesign(std::string_view name, int index, Twips top, std::string_view text) {
    return {.name = name, .index = index, .rect = {120, top, 270, 300}, .accessible = text};
  }
  static Design OptionLabelDesign(int index, Twips top, std::string_view text) {
    return {.name = "lblGen", .index = index, .rect = {420, top, 6360, 300}, .caption = text};
  }
  static Design ValueDesign(std::string_view name, Twips top, std::string_view accessible) {
    return {.name = name, .rect = {1440, top + 45, 5340, 300}, .accessible = accessible};
  }

  void Load();
  void ConnectEvents();
  void ApplyActionChoice();
  void ShowPage();
  void ShowPath(const std::string& path);
  void ChooseScreenFont();
  void ChoosePrinterFont();
  bool ChooseFont(const Font& stored, bool forPrinter);
  void ChoosePrinter();
  void BrowsePath();
  void Store();

  const Platform platform_;
  const SettingsStore& settings_;
  /// The font last chosen in the font dialog. Save stores it in the section of the chosen print action.
  Font chosenFont_;
  bool asking_ = false;  ///< A dialog box of this window is open.
};

}  // namespace corvex
