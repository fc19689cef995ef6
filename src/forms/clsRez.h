#pragma once

#include <string_view>
#include <vector>

#include "forms/Form.h"

namespace corvex {

/// Scales the layout of one window in proportion to its size, including the fonts. The window must be
/// registered first. The class also stores the zoom factor of the window.
class clsRez {
 public:
  void DisableRez() { rezEnabled_ = false; }
  void EnableRez() { rezEnabled_ = true; }
  bool RezEnabled() const { return rezEnabled_; }
  bool HasRegistered() const { return rezRegistered_; }
  float ZoomFactor() const { return zoomFactor_; }

  /// Records the positions and sizes of all controls in proportion to the inner size of the window. The
  /// current size becomes zoom factor 1.0. First, all due tasks of the event loop run. If the inner width or
  /// height is 0, nothing is recorded.
  void Register(Form& form);

  /// Lays out the controls for an inner size of the window. Does nothing while disabled. The controls are
  /// identified only by their order in the form. A control that was added after the registration is not
  /// changed.
  void AdjustControls(Form& form, Twips height, Twips width);

  // Zooms one step in or out, up to a limit. `width` and `height` are the outer size of the window at zoom
  // factor 1.0.
  void Magnify(Form& form, Twips width, Twips height);
  void ReduceSize(Form& form, Twips width, Twips height);

 private:
  /// Which properties of a control are scaled. A line has end points instead of a rectangle.
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
