#pragma once

#include <array>
#include <string>
#include <string_view>

#include "devices/DeviceRecord.h"
#include "devices/UsedNumbers.h"
#include "forms/Controls.h"
#include "platform/Platform.h"

namespace corvex {

/// Edits the Terminal Id and the MSN of a serial port. Shown modally. It only gathers the values: the caller
/// writes them to the terminal.
class frmComSetup : public Form {
 public:
  frmComSetup(Form& owner, const Platform& platform, const UsedNumbers& used);
  ~frmComSetup() override { Withdraw(); }

  /// Edits the entry of the serial port with this index. Returns when the user has closed the window.
  void Open(const DeviceRecord& record, int port);

  std::int32_t oldId = 0;
  std::int32_t newId = 0;
  InterfaceType iface = InterfaceType::Unset;
  std::string msn;
  int portIndex = 0;
  bool changed = false;  ///< The user has entered a value and closed the window with a button.

  Label lblTitle{*this,
                 {.name = "lblTitle",
                  .rect = {180, 150, 5400, 360},
                  .caption = "Serial Port Setup Wizard",
                  .font = {.size = 12, .bold = true}}};
  Label lblText{*this,
                {.name = "lblText",
                 .rect = {180, 600, 5400, 600},
                 .caption = "From your registration document, enter the Terminal Id for the UDI service on "
                            "this port"}};
  Label lblPort{*this, {.name = "lblPort", .rect = {180, 1380, 1020, 300}, .caption = "Port Id"}};
  Label lblPortname{*this, {.name = "lblPortname", .rect = {1320, 1380, 2400, 300}}};
  Label lblId{*this, {.name = "lblId", .rect = {180, 1830, 1020, 300}, .caption = "Id (hex)"}};
  TextBox txtId{*this, {.name = "txtPortField", .index = 0, .rect = {1320, 1770, 1200, 360}}};
  Label lblMsn{*this, {.name = "lblMsn", .rect = {180, 2310, 1020, 300}, .caption = "MSN"}};
  TextBox txtMsn{*this, {.name = "txtPortField", .index = 1, .rect = {1320, 2250, 1200, 360}}};
  std::array<Button, 2> Command1{{
      {*this, {.name = "Command1", .index = 0, .rect = {3060, 2820, 1200, 390}, .caption = "Next"}},
      {*this, {.name = "Command1", .index = 1, .rect = {4380, 2820, 1200, 390}, .caption = "Back"}},
  }};

 private:
  void TakeTypedId();
  bool TakeId();
  void TakeMsn();
  void Refuse(std::int32_t id);
  void Close(bool keeps);

  const Platform& platform_;
  const UsedNumbers& used_;
  bool refusing_ = false;  ///< A message is shown, or the text is being put back.
};

}  // namespace corvex
