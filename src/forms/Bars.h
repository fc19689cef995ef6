#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "forms/Control.h"

namespace corvex {

/// A button of a tool bar.
struct ToolButton {
  std::string_view caption = {};
  std::string_view toolTip = {};
  std::string_view picture = {};  ///< See Image::picture.
  bool separator = false;         ///< Only a gap between buttons.
};

/// A row of buttons, each with a picture and a text. Buttons are numbered from 1, separators included.
class ToolBar : public Control {
 public:
  ToolBar(Container& parent, const Design& design, std::vector<ToolButton> bar)
      : Control(parent, design), buttons(std::move(bar)), enabled_(buttons.size(), true) {}
  std::string_view TypeName() const override { return "Toolbar"; }

  const std::vector<ToolButton> buttons;
  bool Enabled(int button) const { return enabled_[static_cast<std::size_t>(button) - 1]; }
  void SetEnabled(int button, bool can) {
    if (Enabled(button) == can) return;
    enabled_[static_cast<std::size_t>(button) - 1] = can;
    Changed(Change::Items);
  }

  Event<int> buttonClick;  ///< The argument is the number of the button.

 private:
  std::vector<bool> enabled_;
};

/// A row of texts at the bottom of a window. Panels are numbered from 1.
class StatusBar : public Control {
 public:
  /// `widths` are the widths of the panels in proportion to each other.
  StatusBar(Container& parent, const Design& design, std::vector<int> widths)
      : Control(parent, design), panelWidths(std::move(widths)), texts_(panelWidths.size()) {}
  std::string_view TypeName() const override { return "StatusBar"; }

  const std::vector<int> panelWidths;
  const std::string& Text(int panel) const { return texts_[static_cast<std::size_t>(panel) - 1]; }
  void SetText(int panel, std::string_view text) {
    if (Text(panel) == text) return;
    texts_[static_cast<std::size_t>(panel) - 1] = text;
    Changed(Change::Caption);
  }

 private:
  std::vector<std::string> texts_;
};

/// A bar that fills from the left while something is in progress.
class ProgressBar : public Control {
 public:
  ProgressBar(Container& parent, const Design& design) : Control(parent, design) {}
  std::string_view TypeName() const override { return "ProgressBar"; }

  static constexpr int kMin = 1;  ///< The value of an empty bar.
  int Max() const { return max_; }
  int Value() const { return value_; }
  /// Sets the value of a full bar, at least kMin. The current value is limited to it.
  void SetMax(int max) {
    max_ = std::max(max, kMin);
    value_ = std::min(value_, max_);
    Changed(Change::Value);
  }
  /// Sets the current value. A value that is not between kMin and Max is ignored.
  void SetValue(int value) {
    if (value < kMin || value > max_ || value == value_) return;
    value_ = value;
    Changed(Change::Value);
  }

 private:
  int max_ = 100;
  int value_ = kMin;
};

}  // namespace corvex
