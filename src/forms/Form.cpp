#include "forms/Form.h"

#include <algorithm>
#include <utility>

#include "base/ScopedFlag.h"
#include "forms/Bars.h"
#include "forms/Controls.h"
#include "platform/Services.h"

namespace corvex {

Form::Form(EventLoop& loop, WindowSystem& windows, std::string_view name, Form* owner)
    : Container(*this), loop_(loop), windows_(windows), name_(name), owner_(owner) {}

Form::~Form() {
  Withdraw();
}

void Form::ShowModal() {
  const ScopedFlag modal(modal_);
  const EventLoop::Modal holdsUp(loop_);
  if (visible) Changed(Change::Visible);  // the window system must learn that the form is modal now
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

void Form::TakeKey(KeyEvent& key) {
  constexpr int kEnter = 13;
  constexpr int kEsc = 27;
  keyDown(key);
  if (key.handled || key.shift || key.ctrl || key.alt) return;
  Button* button = nullptr;
  if (key.keyCode == kEsc) button = cancelButton;
  if (key.keyCode == kEnter) {
    button = defaultButton;
    if (auto* focused = dynamic_cast<Button*>(focused_)) button = focused;
    if (const auto* text = dynamic_cast<TextBox*>(focused_); text != nullptr && text->multiLine) return;
    if (dynamic_cast<ToolBar*>(focused_) != nullptr) return;
  }
  if (button == nullptr || !button->visible || !button->enabled) return;
  key.handled = true;
  if (key.repeated) return;
  // The form may be hidden before the task runs, for example by the click of an earlier key.
  Post([this, button] {
    if (visible && button->enabled) button->click();
  });
}

void Form::Post(EventLoop::Task task) {
  loop_.Post([task = std::move(task), alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) task();
  });
}

void Form::MoveTo(Twips left, Twips top) {
  constexpr Twips kMost = 1'000'000'000;
  Rect outer = rect;
  outer.left = std::clamp(left, -kMost, kMost);
  outer.top = std::clamp(top, -kMost, kMost);
  rect = outer;
}

void Form::Centre(const Rect& over, Twips width, Twips height) {
  // A form larger than `over` could extend beyond the left or top edge of the screen and hide its title. Keep
  // it within that edge, unless `over` itself extends beyond the edge.
  const Rect screen = windows_.WorkArea();
  const auto place = [](Twips from, Twips room, Twips size, Twips edge) {
    const Twips centred = from + (room - size) / 2;
    return from >= edge ? std::max(centred, edge) : centred;
  };
  rect = Rect{place(over.left, over.width, width, screen.left),
              place(over.top, over.height, height, screen.top), width, height};
}

void Form::Focus(Control& control) {
  Control* const left = focused_;
  focused_ = &control;
  // Notify the window system even if the control already has the focus here: its own state may differ.
  control.Changed(Change::Focus);
  if (left != &control) RaiseFocusEvents(left, &control);
}

void Form::RaiseFocusEvents(Control* left, Control* entered) {
  const Control* const now = focused_;
  if (left != nullptr) left->lostFocus();
  if (entered != nullptr && focused_ == now) entered->gotFocus();
}

void Form::Changed(Change change) {
  if (change == Change::Visible && visible && !attached_) {
    attached_ = true;
    windows_.Attach(*this);
  }
  if (observer != nullptr) observer->FormChanged(change);
}

}  // namespace corvex
