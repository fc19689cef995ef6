#pragma once

#include "forms/Controls.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// The about box. It is modal. The button, Enter and Esc close it.
class frmAbout : public Form {
 public:
  frmAbout(Form& owner, const SettingsStore& settings);
  ~frmAbout() override { Withdraw(); }

  Image Image1{*this, {.name = "Image1", .rect = {225, 225, 1050, 1050}, .picture = "logo"}};
  Label lblVersion{
      *this, {.name = "lblVersion", .rect = {1425, 225, 3450, 375}, .font = {.size = 10, .bold = true}}};
  Label lblbuild{*this, {.name = "lblbuild", .rect = {1425, 600, 3450, 300}}};
  Label lblConf{*this, {.name = "lblConf", .rect = {1475, 900, 3400, 300}}};  // intentional: no leading blank
  Line Line1{*this, {.name = "Line1", .rect = {225, 1425, 4650, 0}}};
  Label lblDisclaimer{*this,
                      {.name = "lblDisclaimer",
                       .rect = {225, 1575, 4650, 960},
                       .caption = "This program shows what the terminal's modem unit tells it and sends on "
                                  "what you enter. After a change of its settings, make a test call before "
                                  "you rely on the terminal for distress and safety."}};
  Button cmdOK{*this, {.name = "cmdOK", .rect = {3675, 2685, 1200, 390}, .caption = "OK"}};
};

}  // namespace corvex
