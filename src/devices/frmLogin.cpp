#include "devices/frmLogin.h"

#include <utility>

namespace corvex {

frmLogin::frmLogin(Form& owner) : Form(owner.loop(), owner.windows(), "frmLogin", &owner) {
  caption = "Owner Level Operation";
  fixedSize = true;
  lblPassword.buddy = &txtPassword;
  txtPassword.masked = true;
  defaultButton = &cmdOK;
  cancelButton = &cmdCancel;
  cmdOK.click = [this] { Close(true); };
  cmdCancel.click = [this] { Close(false); };
  queryUnload = [this] { Close(false); };
}

void frmLogin::Open() {
  constexpr Twips kWidth = 5160 + kFrameWidth;
  constexpr Twips kHeight = 1710 + kFrameHeight;
  Centre(owner()->rect, kWidth, kHeight);
  loginOk = false;
  loginPassword.clear();
  txtPassword.SetText("");
  txtPassword.SetFocus();
  ShowModal();
}

std::string frmLogin::TakePassword() {
  return std::exchange(loginPassword, {});
}

void frmLogin::Close(bool ok) {
  if (!visible) return;  // a second click
  loginOk = ok;
  if (ok) loginPassword = txtPassword.Text();
  txtPassword.SetText("");
  visible = false;
}

}  // namespace corvex
