#pragma once

#include <string>

#include "forms/Controls.h"

namespace corvex {

/// The modal window that asks for the password of the modem's owner.
class frmLogin : public Form {
 public:
  explicit frmLogin(Form& owner);
  ~frmLogin() override { Withdraw(); }

  bool loginOk = false;  ///< The user has entered a password. Set by Open.
  std::string loginPassword;

  /// Shows the window until the user has entered a password or cancels.
  void Open();
  /// Returns the password and removes it from the window.
  std::string TakePassword();

  Label lblText{*this,
                {.name = "lblText",
                 .rect = {120, 150, 4920, 300},
                 .caption = "Modem owner password is required for this operation"}};
  Label lblPassword{*this, {.name = "lblPassword", .rect = {120, 645, 1020, 270}, .caption = "&Password:"}};
  TextBox txtPassword{*this,
                      {.name = "txtPassword",
                       .rect = {1200, 600, 3840, 360},
                       .toolTip = "Owner Level Password on the Modem unit"}};
  Button cmdOK{*this, {.name = "cmdOK", .rect = {2520, 1200, 1200, 390}, .caption = "OK"}};
  Button cmdCancel{*this, {.name = "cmdCancel", .rect = {3840, 1200, 1200, 390}, .caption = "Cancel"}};

 private:
  void Close(bool ok);
};

}  // namespace corvex
