#pragma once

#include <cstdint>
#include <ostream>
#include <utility>

namespace corvex {

/// What has changed in a form or a control. Each value is one bit, so that an observer can combine several.
enum class Change : std::uint32_t {
  Caption = 1u << 0,
  Rect = 1u << 1,
  Visible = 1u << 2,
  Enabled = 1u << 3,
  ToolTip = 1u << 4,
  Checked = 1u << 5,
  Items = 1u << 6,
  Selection = 1u << 7,
  Picture = 1u << 8,
  Font = 1u << 9,
  ForeColor = 1u << 10,
  Spacing = 1u << 11,
  Order = 1u << 12,
  Focus = 1u << 13,
  Pointer = 1u << 14,
  WindowState = 1u << 15,
  Value = 1u << 16,
  Accessible = 1u << 17,
  BackColor = 1u << 18,
  Default = 1u << 19,
  Dimmed = 1u << 20,
  Expanded = 1u << 21,
  Scroll = 1u << 22,
  PopUp = 1u << 23,
};

/// Base class of objects that are notified when one of their properties changes.
class Observable {
 public:
  /// Called by a property after its value has changed.
  virtual void Changed(Change change) = 0;

 protected:
  ~Observable() = default;
};

/// A value that notifies its owner when it changes. Setting the current value again does not notify the
/// owner.
template <typename T>
class Property {
 public:
  Property(Observable& owner, Change change, T value)
      : owner_(owner), change_(change), value_(std::move(value)) {}
  Property(const Property&) = delete;
  Property& operator=(const Property&) = delete;

  template <typename U>
  Property& operator=(U&& value) {
    if (value_ == value) return *this;
    value_ = std::forward<U>(value);
    owner_.Changed(change_);
    return *this;
  }

  const T& Get() const { return value_; }
  operator const T&() const {
    return value_;
  }  // NOLINT(google-explicit-constructor): used like a plain member

  /// For the window system: stores a value that the user has set, without notifying the owner.
  void Adopt(T value) { value_ = std::move(value); }

  template <typename U>
  friend bool operator==(const Property& property, const U& value) {
    return property.value_ == value;
  }
  friend std::ostream& operator<<(std::ostream& out, const Property& property) requires
      requires(const T& value) {
    out << value;
  }
  { return out << property.value_; }

 private:
  Observable& owner_;
  Change change_;
  T value_;
};

}  // namespace corvex
