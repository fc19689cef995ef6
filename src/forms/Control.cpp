#include "forms/Control.h"

#include <algorithm>

namespace corvex {

Control::Control(Container& parent, const Design& design)
    : rect{*this, Change::Rect, design.rect},
      visible{*this, Change::Visible, design.visible},
      enabled{*this, Change::Enabled, design.enabled},
      toolTip{*this, Change::ToolTip, std::string(design.toolTip)},
      accessible{*this, Change::Accessible, std::string(design.accessible)},
      font{*this, Change::Font, design.font},
      look(design.look),
      align(design.align),
      parent_(parent),
      name_(design.name),
      index_(design.index),
      order_(static_cast<int>(parent.form().controls_.size())) {
  parent.form().controls_.push_back(this);
}

void Control::BringToFront() {
  int highest = order_;
  for (const Control* other : form().controls()) {
    if (other != this && &other->parent() == &parent_) highest = std::max(highest, other->order_ + 1);
  }
  if (highest == order_) return;
  order_ = highest;
  Changed(Change::Order);
}

void Control::Changed(Change change) {
  if (form().observer != nullptr) form().observer->ControlChanged(*this, change);
}

}  // namespace corvex
