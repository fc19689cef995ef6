#include "forms/Form.h"

#include <algorithm>

#include "common/ScopedFlag.h"
#include "forms/Control.h"
#include "platform/Services.h"

namespace corvex {

Form::Form(EventLoop& loop, WindowSystem& windows, std::string_view name, Form* owner)
    : Container(*this), loop_(loop), windows_(windows), name_(name), owner_(owner) {}

Form::~Form() {
  Withdraw();
}

void Form::ShowModal() {
  const ScopedFlag modal(modal_);
  visible = true;
  while (visible) loop_.Pump();
}

void Form::Withdraw() {
  if (!attached_) return;
  attached_ = false;
  windows_.Detach(*this);
  observer = nullptr;
}

Twips Form::InnerWidth() const {
  return std::max(rect.Get().width - kFrameWidth, 0);
}

Twips Form::InnerHeight() const {
  return std::max(rect.Get().height - kFrameHeight - (hasMenuBar_ ? kMenuBarHeight : 0), 0);
}

void Form::SetActive(bool active) {
  if (active == active_) return;
  active_ = active;
  if (active) {
    activate();
  } else {
    deactivate();
  }
}

void Form::Focus(Control& control) {
  focused_ = &control;
  // Told even if the form believes it has the focus already: the window system may know better.
  control.Changed(Change::Focus);
}

void Form::Changed(Change change) {
  if (change == Change::Visible && visible && !attached_) {
    attached_ = true;
    windows_.Attach(*this);
  }
  if (observer != nullptr) observer->FormChanged(change);
}

}  // namespace corvex
