#pragma once

#include "forms/Form.h"

namespace corvex {

/// The window "Book File Manager". Still empty; it is to copy the modem's phone book to a file and back.
class frmBook : public Form {
 public:
  explicit frmBook(Form& owner) : Form(owner.loop(), owner.windows(), "frmBook", &owner) {
    caption = "Book File Manager";
    rect = Rect{owner.rect.Get().left + 600, owner.rect.Get().top + 600, 6000, 4200};
    queryUnload = [this] { visible = false; };
  }
  ~frmBook() override { Withdraw(); }
};

}  // namespace corvex
