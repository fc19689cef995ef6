#pragma once

#include <string>
#include <vector>

#include "forms/Controls.h"

namespace corvex {

/// Shows what a configuration file will change, before it is loaded. Shown modally.
class frmChanges : public Form {
 public:
  explicit frmChanges(Form& owner);
  ~frmChanges() override { Withdraw(); }

  /// Returns true if the user wants to load the file. `lines` are the texts to show, the first as a heading.
  bool Ask(const std::string& path, const std::vector<std::string>& lines);

  Label lblFile{*this, {.name = "lblFile", .rect = {120, 120, 8160, 300}}};
  Label lblSummary{*this, {.name = "lblSummary", .rect = {120, 450, 8160, 300}, .font = {.bold = true}}};
  TextBox txtChanges{*this,
                     {.name = "txtChanges",
                      .rect = {120, 810, 8160, 4200},
                      .accessible = "Changes to the terminal's configuration"}};
  Button cmdLoad{*this, {.name = "cmdLoad", .rect = {5640, 5130, 1260, 390}, .caption = "Load"}};
  Button cmdCancel{*this, {.name = "cmdCancel", .rect = {7020, 5130, 1260, 390}, .caption = "Cancel"}};

 private:
  bool load_ = false;
};

}  // namespace corvex
