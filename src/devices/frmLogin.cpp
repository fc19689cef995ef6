#include "devices/frmLogin.h"

namespace corvex {

frmLogin::frmLogin(Form& owner) : Form(owner.loop(), owner.windows(), "frmLogin", &owner) {
  caption = "Owner Level Operation";
  fixedSize = true;
  lblPassword.buddy = &txtPassword;
  txtPassword.masked = true;
  defaultButton = &cmdOK;
  cancelButton = &cmdCancel;
  const auto close = [this](bool ok) {
    loginOk = ok;
    if (ok) loginPassword = txtPassword.Text();
    txtPassword.SetText({});
    visible = false;
  };
  cmdOK.click = [close] { close(true); };
  cmdCancel.click = [close] { close(false); };
  queryUnload = [close] { close(false); };
}

void frmLogin::Open() {
  constexpr Twips kWidth = 5190;
  constexpr Twips kHeight = 2070;
  Centre(owner()->rect, kWidth, kHeight);
  loginOk = false;
  loginPassword.clear();
  txtPassword.SetText({});
  txtPassword.SetFocus();
  ShowModal();
}

}  // namespace corvex
