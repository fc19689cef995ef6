#include "forms/clsRez.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

#include "base/Text.h"
#include "forms/Controls.h"

namespace corvex {

namespace {

// The type names of each group, without separators. A type belongs to a group if its name is a substring of
// the group's text.
constexpr std::string_view kWithFont = "TextBoxLabelFrameCommandButtonListBoxMSFlexGridCheckBoxOptionButton";
constexpr std::string_view kWithoutFont = "ImageUpDownListViewComboBoxShapeAnimationRichTextBoxTreeView";
constexpr std::string_view kLine = "Line";

constexpr double kZoomStep = 0.3;

/// Converts a ratio to a length. The result is limited to 1e9 twips in either direction, so that the sum of
/// two lengths does not overflow.
Twips Length(float ratio, float whole) {
  constexpr double kMost = 1e9;
  return static_cast<Twips>(RoundHalfEven(std::clamp<double>(ratio * whole, -kMost, kMost)));
}

/// The font size in points, or nullopt if the result is not a valid size. Intentional: one point is added,
/// even at the registered size.
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
  // Run due tasks first, because they may change the sizes that are recorded below.
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
  // Intentional: after two steps the factor is slightly below 1.6 because of rounding, so a third step is
  // possible.
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
