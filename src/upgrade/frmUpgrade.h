#pragma once

#include "forms/Form.h"

namespace corvex {

/// The window "Modem Software Upgrade".
class frmUpgrade : public Form {
 public:
  explicit frmUpgrade(Form& owner) : Form(owner.loop(), owner.windows(), "frmUpgrade", &owner) {
    caption = "Modem Software Upgrade";
    rect = Rect{owner.rect.Get().left + 600, owner.rect.Get().top + 600, 6000, 4200};
    queryUnload = [this] { visible = false; };
  }
  ~frmUpgrade() override { Withdraw(); }
};

}  // namespace corvex
