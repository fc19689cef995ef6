#pragma once

#include <string>

#include "forms/Controls.h"

namespace corvex {

/// Asks the user for the terminal's owner password. Shown modally.
class frmLogin : public Form {
 public:
  explicit frmLogin(Form& owner);
  ~frmLogin() override { Withdraw(); }

  /// Shows the window with an empty box. Returns when the user has closed it.
  void Open();

  bool loginOk = false;  ///< The user has confirmed a password.
  /// The password of the last Open. The caller clears it after use.
  std::string loginPassword;

  Label lblText{*this,
                {.name = "lblText",
                 .rect = {180, 180, 4740, 300},
                 .caption = "Modem owner password is required for this operation"}};
  Label lblPassword{*this, {.name = "lblPassword", .rect = {180, 690, 1140, 300}, .caption = "&Password:"}};
  TextBox txtPassword{*this,
                      {.name = "txtPassword",
                       .rect = {1380, 630, 3540, 360},
                       .toolTip = "Owner Level Password on the Modem unit"}};
  Button cmdOK{*this, {.name = "cmdOK", .rect = {2400, 1200, 1200, 390}, .caption = "OK"}};
  Button cmdCancel{*this, {.name = "cmdCancel", .rect = {3720, 1200, 1200, 390}, .caption = "Cancel"}};
};

}  // namespace corvex
