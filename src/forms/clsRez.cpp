#include "forms/clsRez.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

#include "base/Text.h"
#include "forms/Controls.h"

namespace corvex {

namespace {

// The kinds of each group, one behind the other: any part of such a text counts as a kind of the group.
constexpr std::string_view kWithFont = "TextBoxLabelFrameCommandButtonListBoxMSFlexGridCheckBoxOptionButton";
constexpr std::string_view kWithoutFont = "ImageUpDownListViewComboBoxShapeAnimationRichTextBoxTreeView";
constexpr std::string_view kLine = "Line";

constexpr double kZoomStep = 0.3;

/// A length of so many parts of a window; one that is out of all proportion ends at a bound that leaves room
/// to add two of them.
Twips Length(float ratio, float whole) {
  constexpr double kMost = 1e9;
  return static_cast<Twips>(RoundHalfEven(std::clamp<double>(ratio * whole, -kMost, kMost)));
}

/// One point is added even at the size that was registered; that is meant. None if it is no font size.
std::optional<std::int16_t> FontSize(float ratio, float whole) {
  const double rounded = RoundHalfEven(ratio * whole + 1);
  if (!(rounded >= 1 && rounded <= std::numeric_limits<std::int16_t>::max())) return std::nullopt;
  return static_cast<std::int16_t>(rounded);
}

}  // namespace

clsRez::Group clsRez::GroupOf(std::string_view typeName) {
  if (Contains(kWithFont, typeName)) return Group::RectAndFont;
  if (Contains(kWithoutFont, typeName)) return Group::Rect;
  return typeName == kLine ? Group::Ends : Group::None;
}

void clsRez::Register(Form& form) {
  // First, as it may change the sizes that are taken below.
  form.loop().Pump(form.loop().Now());
  const auto height = static_cast<float>(form.InnerHeight());
  const auto width = static_cast<float>(form.InnerWidth());
  if (height <= 0 || width <= 0) return;
  zoomFactor_ = 1;
  controlRecords_.clear();
  for (const Control* control : form.controls()) {
    const Group group = GroupOf(control->TypeName());
    if (group == Group::None) continue;
    ControlRatio ratio;
    if (group == Group::Ends) {
      const LineEnds& ends = dynamic_cast<const Line&>(*control).ends;
      ratio.x1Ratio = static_cast<float>(ends.x1) / width;
      ratio.x2Ratio = static_cast<float>(ends.x2) / width;
      ratio.y1Ratio = static_cast<float>(ends.y1) / height;
      ratio.y2Ratio = static_cast<float>(ends.y2) / height;
    } else {
      const Rect& rect = control->rect;
      ratio.leftRatio = static_cast<float>(rect.left) / width;
      ratio.topRatio = static_cast<float>(rect.top) / height;
      ratio.widthRatio = static_cast<float>(rect.width) / width;
      ratio.heightRatio = static_cast<float>(rect.height) / height;
    }
    if (group == Group::RectAndFont) {
      const auto size = static_cast<float>(control->font.Get().size);
      ratio.fontByHeight = size / height;
      ratio.fontByWidth = size / width;
    }
    controlRecords_.push_back(ratio);
  }
  rezEnabled_ = true;
  rezRegistered_ = true;
}

void clsRez::AdjustControls(Form& form, Twips height, Twips width) {
  if (!rezEnabled_) return;
  const auto h = static_cast<float>(height);
  const auto w = static_cast<float>(width);
  auto recordCursor = controlRecords_.cbegin();
  for (Control* control : form.controls()) {
    const Group group = GroupOf(control->TypeName());
    if (group == Group::None) continue;
    if (recordCursor == controlRecords_.cend()) return;
    const ControlRatio& ratio = *recordCursor++;
    if (group == Group::Ends) {
      dynamic_cast<Line&>(*control).ends = LineEnds{Length(ratio.x1Ratio, w), Length(ratio.y1Ratio, h),
                                                    Length(ratio.x2Ratio, w), Length(ratio.y2Ratio, h)};
      continue;
    }
    control->rect = Rect{Length(ratio.leftRatio, w), Length(ratio.topRatio, h), Length(ratio.widthRatio, w),
                         Length(ratio.heightRatio, h)};
    if (group != Group::RectAndFont) continue;
    const auto byHeight = FontSize(ratio.fontByHeight, h);
    const auto byWidth = FontSize(ratio.fontByWidth, w);
    if (!byHeight || !byWidth) continue;
    Font font = control->font;
    font.size = std::max(*byHeight, *byWidth);
    control->font = font;
  }
}

void clsRez::Magnify(Form& form, Twips width, Twips height) {
  // The third sum stays just below the bound, so that there are three steps; that is meant.
  if (zoomFactor_ < 1.6F) Zoom(form, kZoomStep, width, height);
}

void clsRez::ReduceSize(Form& form, Twips width, Twips height) {
  if (zoomFactor_ > 0.8F) Zoom(form, -kZoomStep, width, height);
}

void clsRez::Zoom(Form& form, double step, Twips width, Twips height) {
  zoomFactor_ = static_cast<float>(zoomFactor_ + step);
  Rect rect = form.rect;
  rect.height = Length(zoomFactor_, static_cast<float>(height));
  rect.width = Length(zoomFactor_, static_cast<float>(width));
  form.rect = rect;
}

}  // namespace corvex
