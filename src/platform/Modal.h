#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/EventLoop.h"
#include "platform/Services.h"

// Wrappers of Dialogs and Printers. Each call that waits for the user's answer holds an EventLoop::Modal
// until it returns.

namespace corvex {

class ModalDialogs : public Dialogs {
 public:
  ModalDialogs(EventLoop& loop, Dialogs& dialogs) : loop_(loop), dialogs_(dialogs) {}

  void MessageBox(std::string_view text) override {
    const EventLoop::Modal modal(loop_);
    dialogs_.MessageBox(text);
  }
  Answer Ask(const Question& question) override {
    const EventLoop::Modal modal(loop_);
    return dialogs_.Ask(question);
  }
  std::optional<std::string> InputBox(std::string_view prompt, std::string_view title) override {
    const EventLoop::Modal modal(loop_);
    return dialogs_.InputBox(prompt, title);
  }
  std::optional<std::string> OpenFile(const FileQuestion& question) override {
    const EventLoop::Modal modal(loop_);
    return dialogs_.OpenFile(question);
  }
  std::optional<std::string> SaveFile(const FileQuestion& question) override {
    const EventLoop::Modal modal(loop_);
    return dialogs_.SaveFile(question);
  }
  std::optional<Font> ChooseFont(const Font& font, bool forPrinter, const Form* owner) override {
    const EventLoop::Modal modal(loop_);
    return dialogs_.ChooseFont(font, forPrinter, owner);
  }

 private:
  EventLoop& loop_;
  Dialogs& dialogs_;
};

/// Asks the user on behalf of a procedure that can be abandoned (see EventLoop::Wait). If the procedure is
/// abandoned while a box is open, the call throws WaitAbandoned when the user has answered.
class AbandonableDialogs {
 public:
  AbandonableDialogs(EventLoop& loop, Dialogs& dialogs) : loop_(loop), dialogs_(dialogs) {}

  void MessageBox(std::string_view text) {
    const EventLoop::Wait wait(loop_);
    dialogs_.MessageBox(text);
    wait.Check();
  }
  bool AskYesNo(std::string_view text) {
    const EventLoop::Wait wait(loop_);
    const bool yes = dialogs_.AskYesNo(text);
    wait.Check();
    return yes;
  }
  std::optional<std::string> InputBox(std::string_view prompt, std::string_view title) {
    const EventLoop::Wait wait(loop_);
    auto answer = dialogs_.InputBox(prompt, title);
    wait.Check();
    return answer;
  }

 private:
  EventLoop& loop_;
  Dialogs& dialogs_;
};

class ModalPrinters : public Printers {
 public:
  ModalPrinters(EventLoop& loop, Printers& printers) : loop_(loop), printers_(printers) {}

  int Count() const override { return printers_.Count(); }
  std::string DefaultName() const override { return printers_.DefaultName(); }
  bool PrintText(const std::string& text, const Font& font) override {
    return printers_.PrintText(text, font);
  }
  bool PrintWindow(const Form& form) override { return printers_.PrintWindow(form); }
  std::unique_ptr<PrintJob> Choose(const Form* owner) override {
    const EventLoop::Modal modal(loop_);
    return printers_.Choose(owner);
  }
  void ChooseDefault(const Form* owner) override {
    const EventLoop::Modal modal(loop_);
    printers_.ChooseDefault(owner);
  }

 private:
  EventLoop& loop_;
  Printers& printers_;
};

}  // namespace corvex
