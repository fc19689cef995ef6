#pragma once

#include <string_view>
#include <vector>

#include "forms/Form.h"

namespace corvex {

/// Makes the layout of one window proportional: once the window has been registered, its controls follow its
/// size, fonts included. It also keeps the window's zoom.
class clsRez {
 public:
  void DisableRez() { rezEnabled_ = false; }
  void EnableRez() { rezEnabled_ = true; }
  bool RezEnabled() const { return rezEnabled_; }
  bool HasRegistered() const { return rezRegistered_; }
  float ZoomFactor() const { return zoomFactor_; }

  /// Takes the places of all controls in proportion to the window's inner size, which is 1.0 from now on.
  /// What is pending in the event loop runs before. A window without an inner size changes nothing.
  void Register(Form& form);

  /// Places the controls for an inner size of the window, unless disabled. It knows the controls by their
  /// order in the window alone; one that has come since they were registered stays as it is.
  void AdjustControls(Form& form, Twips height, Twips width);

  // One step larger or smaller, up to a bound; `width` and `height` are the window's outer size at 1.0.
  void Magnify(Form& form, Twips width, Twips height);
  void ReduceSize(Form& form, Twips width, Twips height);

 private:
  /// What of a control is scaled. A line has ends and nothing else.
  enum class Group { None, RectAndFont, Rect, Ends };
  static Group GroupOf(std::string_view typeName);

  struct ControlRatio {
    float leftRatio = 0;
    float topRatio = 0;
    float heightRatio = 0;
    float widthRatio = 0;
    float fontByWidth = 0;
    float fontByHeight = 0;
    float x1Ratio = 0;
    float x2Ratio = 0;
    float y1Ratio = 0;
    float y2Ratio = 0;
  };

  void Zoom(Form& form, double step, Twips width, Twips height);

  bool rezEnabled_ = false;
  bool rezRegistered_ = false;
  float zoomFactor_ = 1;
  std::vector<ControlRatio> controlRecords_;
};

}  // namespace corvex
