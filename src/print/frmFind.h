#pragma once

#include <array>
#include <functional>
#include <string>

#include "forms/Controls.h"
#include "print/modSdi.h"

namespace corvex {

/// The modal find dialog of the print view. A search selects the text that it finds in the print view.
class frmFind : public Form {
 public:
  /// `text`: the initial search text. `findNext`: runs the search that `state` describes.
  frmFind(Form& owner, FindState& state, std::string_view text, std::function<void()> findNext);
  ~frmFind() override { Withdraw(); }

  Label Label1{*this, {.name = "Label1", .rect = {120, 195, 1080, 270}, .caption = "Fi&nd What:"}};
  TextBox txtFind{*this, {.name = "txtFind", .rect = {1260, 150, 2700, 360}, .toolTip = "Text to Find"}};
  CheckBox chkCase{*this,
                   {.name = "chkCase",
                    .rect = {120, 900, 1560, 330},
                    .caption = "Match &Case",
                    .toolTip = "Case Sensitivity"}};
  Frame Frame1{*this, {.name = "Frame1", .rect = {1800, 630, 2160, 720}, .caption = "Direction"}};
  std::array<OptionButton, 2> optDirection{{
      {Frame1,
       {.name = "optDirection",
        .index = 0,
        .rect = {120, 300, 840, 330},
        .caption = "&Up",
        .toolTip = "Search to Beginning of Document"}},
      {Frame1,
       {.name = "optDirection",
        .index = 1,
        .rect = {1080, 300, 960, 330},
        .caption = "&Down",
        .toolTip = "Search to End of Document"}},
  }};
  Button cmdFind{
      *this,
      {.name = "cmdFind", .rect = {4140, 150, 1200, 390}, .caption = "&Find", .toolTip = "Start Search"}};
  Button cmdCancel{*this,
                   {.name = "cmdCancel",
                    .rect = {4140, 630, 1200, 390},
                    .caption = "Cancel",
                    .toolTip = "Return to Notepad"}};

 private:
  void PlaceBeside(const Rect& view);

  FindState& state_;
  bool searching_ = false;
};

}  // namespace corvex
