#pragma once

#include <string>
#include <utility>

#include "base/ScopedFlag.h"
#include "forms/Form.h"
#include "platform/Services.h"

namespace corvex {

/// The messages of a modal window about what the user has entered, one at a time. A message opens in a task
/// of its own: if it opened while the focus moves, it would move the focus again.
class EntryMessages {
 public:
  EntryMessages(Form& form, Dialogs& dialogs) : form_(form), dialogs_(dialogs) {}

  /// Shows a message soon. Does nothing if another one is open or about to open. The message is dropped if
  /// the window closes first.
  void Show(std::string text) {
    if (busy_) return;
    busy_ = true;
    form_.Post([this, text = std::move(text)] {
      const ScopedFlag busy(busy_);
      if (form_.visible) dialogs_.MessageBox(text);
    });
  }
  /// Asks at once and returns the answer. Must not be called while a message is open.
  bool AskYesNo(std::string text) {
    const ScopedFlag busy(busy_);
    return dialogs_.Ask({.text = std::move(text), .owner = &form_}) == Answer::Yes;
  }
  /// True while a message is open or about to open.
  bool Busy() const { return busy_; }

 private:
  Form& form_;
  Dialogs& dialogs_;
  bool busy_ = false;
};

}  // namespace corvex
