#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "devices/DeviceRecord.h"
#include "devices/EntryMessages.h"
#include "devices/UsedNumbers.h"
#include "forms/Controls.h"
#include "platform/Platform.h"

namespace corvex {

/// The modal panel for the Id and MSN of a serial port. It only changes its own fields. The caller calls Open
/// and then looks at `changed`.
class frmComSetup : public Form {
 public:
  /// `used` is read at each use and must live as long as the window.
  frmComSetup(Form& owner, const Platform& platform, const UsedNumbers& used);
  ~frmComSetup() override { Withdraw(); }

  std::int16_t oldId = 0;
  std::int16_t newId = 0;
  InterfaceType iface = InterfaceType::Unset;
  std::string msn;
  int portIndex = 0;
  /// The user has entered an Id or MSN and has closed the panel with one of its buttons.
  bool changed = false;

  /// Shows the panel for an entry until the user closes it.
  void Open(const DeviceRecord& record, int port);

  Label lblTitle{*this,
                 {.name = "lblTitle",
                  .rect = {120, 120, kWidth, 360},
                  .caption = "Serial Port Setup Wizard",
                  .font = {.size = 10, .bold = true}}};
  Label lblText{*this, {.name = "lblText", .rect = {120, 525, kWidth, 600}}};
  Label lblPort{*this, FieldDesign(0, 1215, "Port Id")};
  Label lblPortname{*this,
                    {.name = "lblPortname", .rect = {kLeft, 1215, 2400, 270}, .accessible = "Port Id: %"}};
  Label lblId{*this, FieldDesign(1, 1635, "Id (hex)")};
  Label lblMsn{*this, FieldDesign(2, 2085, "MSN")};
  /// The Id and the MSN.
  std::array<TextBox, 2> txtPortField{{
      {*this, BoxDesign(0, 1590, "Id (hex)")},
      {*this, BoxDesign(1, 2040, "MSN")},
  }};
  std::array<Button, 2> Command1{{
      {*this, ButtonDesign(0, 2400, "Next")},
      {*this, ButtonDesign(1, 3720, "Back")},
  }};

 private:
  static constexpr Twips kWidth = 4800;
  static constexpr Twips kLeft = 1200;
  static Design FieldDesign(int index, Twips top, std::string_view caption) {
    return {.name = "lblField", .index = index, .rect = {120, top, 1020, 270}, .caption = caption};
  }
  static Design BoxDesign(int index, Twips top, std::string_view accessible) {
    return {
        .name = "txtPortField", .index = index, .rect = {kLeft, top, 1200, 360}, .accessible = accessible};
  }
  static Design ButtonDesign(int index, Twips left, std::string_view caption) {
    return {.name = "Command1", .index = index, .rect = {left, 2640, 1200, 390}, .caption = caption};
  }

  enum class When { Typing, Leaving };

  bool TakeId(When when);
  bool TakeMsn(When when);
  void ReturnTo(TextBox& box, const std::string& text, std::string_view message);
  void CloseTaken();
  void Cancel();

  const Platform platform_;
  const UsedNumbers& used_;
  EntryMessages messages_{*this, platform_.dialogs};
};

}  // namespace corvex
