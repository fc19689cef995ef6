#pragma once

#include <vector>

#include "forms/Form.h"

namespace corvex::test {

/// Returns the first visible form of a type, or null.
template <typename Window>
Window* FindShown(const std::vector<Form*>& forms) {
  for (Form* form : forms) {
    if (auto* window = dynamic_cast<Window*>(form); window != nullptr && window->visible) return window;
  }
  return nullptr;
}

/// A window system that knows its forms.
template <typename Windows>
class WindowsWithForms : public Windows {
 public:
  using Windows::Windows;
  void Attach(Form& form) override {
    attached_.push_back(&form);
    Windows::Attach(form);
  }
  void Detach(Form& form) override {
    std::erase(attached_, &form);
    Windows::Detach(form);
  }
  template <typename Window>
  Window* Shown() const {
    return FindShown<Window>(attached_);
  }

 private:
  std::vector<Form*> attached_;
};

}  // namespace corvex::test
