#pragma once

#include <optional>
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
    pending_ = std::move(text);
    form_.Post([this] {
      if (!pending_) return;
      const ScopedFlag busy(busy_);
      const std::string shown = *std::exchange(pending_, std::nullopt);
      if (form_.visible) dialogs_.MessageBox(shown);
    });
  }
  /// Drops a message that is about to open. To be called when the window opens.
  void Drop() {
    pending_.reset();
    busy_ = false;
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
  std::optional<std::string> pending_;  ///< The message that is about to open.
};

}  // namespace corvex
