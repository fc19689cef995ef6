#pragma once

#include "forms/Form.h"

namespace corvex {

/// The window "Device Manager".
class frmDev : public Form {
 public:
  explicit frmDev(Form& owner) : Form(owner.loop(), owner.windows(), "frmDev", &owner) {
    caption = "Device Manager";
    rect = Rect{owner.rect.Get().left + 600, owner.rect.Get().top + 600, 6000, 4200};
    queryUnload = [this] { visible = false; };
  }
  ~frmDev() override { Withdraw(); }
};

}  // namespace corvex
