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
#include "state/TerminalModel.h"

namespace corvex {

/// The modal editor of ISDN, USB and COM devices, analog ports and handsets. It has three pages: the Id and
/// service of a device, its MSN and options, and a handset. It only changes its own fields. The caller sets
/// them, calls Open, and then looks at editOk.
class frmNewISDN : public Form {
 public:
  /// `used` and `model` are read at each use and must live as long as the window.
  frmNewISDN(Form& owner, const Platform& platform, const UsedNumbers& used, const TerminalModel& model);
  ~frmNewISDN() override { Withdraw(); }

  InterfaceType editIface = InterfaceType::Isdn;
  std::int32_t editId = 0;
  ServiceType editService = ServiceType::Speech;
  std::string editMsn;
  bool editOk = false;  ///< The user has completed the page. Set by Open.
  /// The service of a new device or an analog port. None: the default of the interface.
  ServiceType requestedService = ServiceType::Speech;
  bool editEcho = false;
  bool editStu = false;
  bool editPriority = false;
  bool editAccess = false;
  bool editCharge = false;  ///< Cleared by Open for a new device.
  std::int16_t editTelPort = DeviceRecord::kNone;
  std::int16_t editHandset = DeviceRecord::kNone;
  bool handsetMode = false;  ///< Open shows the page of a handset.
  // The two entries of the handset, in tag form, and whether the user has changed them.
  std::string firstRecordTag;
  std::string secondRecordTag;
  bool firstChanged = false;
  bool secondChanged = false;
  bool editing = false;  ///< An existing device is edited. Open shows its second page.

  bool IsAnalog() const { return editTelPort != DeviceRecord::kNone; }

  /// Shows the window until the user has completed the page or quits.
  void Open();

  Frame frmIntro{*this, {.name = "frmIntro", .rect = kPage}};
  Frame frmConfig{*this, {.name = "frmConfig", .rect = kPage, .visible = false}};
  Frame frmHS{*this, {.name = "frmHS", .rect = kPage, .visible = false}};

  /// The titles of the first two pages.
  std::array<Label, 2> Label1{{
      {frmIntro, TitleDesign("Label1", 0)},
      {frmConfig, TitleDesign("Label1", 1)},
  }};

  Label labIntro{frmIntro, TextDesign(11)};
  Label labId{frmIntro, FieldDesign(1, 1365, "Terminal Id (hex)")};
  std::array<TextBox, 1> txtDECT{
      {{frmIntro, {.name = "txtDECT", .index = 0, .rect = {kLeft, 1320, 1200, 360}}}}};
  Label labService{frmIntro, FieldDesign(2, 1815, "Service")};
  std::array<ComboBox, 1> comboDECT{
      {{frmIntro, {.name = "comboDECT", .index = 0, .rect = {kLeft, 1770, 2400, 360}}}}};

  Label labConfig{frmConfig, TextDesign(0)};
  Label labMsn{frmConfig, FieldDesign(3, 1365, "MSN")};
  TextBox txtIsdnMSN{frmConfig, {.name = "txtIsdnMSN", .rect = {kLeft, 1320, 1200, 360}}};

  Label labHandset{frmHS, TitleDesign("Label2", 4)};
  Label labHandsetText{frmHS, TextDesign(5)};
  Label labName{frmHS, FieldDesign(6, 1275, "Name/Location")};
  TextBox txtName{frmHS, {.name = "txtName", .rect = {kLeft, 1230, 4080, 360}}};
  Label labFirst{frmHS, {.name = "Label2", .index = 7, .rect = {kLeft, 1710, kColumn, 270}, .caption = "1"}};
  Label labSecond{frmHS,
                  {.name = "Label2", .index = 8, .rect = {kSecond, 1710, kColumn, 270}, .caption = "2"}};
  Label labHsService{frmHS, FieldDesign(9, 2070, "Service")};
  std::array<ComboBox, 2> comboHS{{
      {frmHS, HsDesign("comboHS", 0, 2025, "Service of the first MSN", kVoiceServices)},
      {frmHS, HsDesign("comboHS", 1, 2025, "Service of the second MSN", kVoiceServices)},
  }};
  Label labHsMsn{frmHS, FieldDesign(10, 2520, "MSN")};
  std::array<TextBox, 2> txtHsMsn{{
      {frmHS, HsDesign("txtHsMsn", 0, 2475, "First MSN")},
      {frmHS, HsDesign("txtHsMsn", 1, 2475, "Second MSN")},
  }};
  Label labHsId{frmHS, FieldDesign(12, 2970, "Terminal Id (hex)")};
  std::array<TextBox, 2> tstHsDoid{{
      {frmHS, HsDesign("tstHsDoid", 0, 2925, "Terminal Id of the first MSN (hex)")},
      {frmHS, HsDesign("tstHsDoid", 1, 2925, "Terminal Id of the second MSN (hex)")},
  }};

  // The second page stacks those of its options that apply to the service.
  CheckBox CheckEcho{frmConfig, OptionDesign("CheckEcho", -1, "Echo Cancellation")};
  CheckBox CheckSTU{frmConfig, OptionDesign("CheckSTU", -1, "Allow STU")};
  CheckBox CheckCharge{frmConfig, OptionDesign("CheckCharge", 2, "Apply charge tone*")};
  std::array<CheckBox, 2> CheckAccess{{
      {frmHS, OptionDesign("CheckAccess", 0, "Require Access Code per call*", 3435)},
      {frmConfig, OptionDesign("CheckAccess", 1, "Require Access Code per call*")},
  }};
  std::array<CheckBox, 2> chkPro{{
      {frmConfig, OptionDesign("chkPro", 0, "Professional Priority Service")},
      {frmHS, OptionDesign("chkPro", 1, "Professional Priority Service", 3810)},
  }};
  Label labAccessCode{frmConfig, FootnoteDesign("labAccessCode", 8)};
  Label labHsAccessCode{frmHS, FootnoteDesign("labHsAccessCode", -1)};

  std::array<Button, 6> cmdTop{{
      {frmIntro, ButtonDesign(0, kLeftButton, "Quit Setup")},
      {frmIntro, ButtonDesign(1, kRightButton, "Continue with setup")},
      {frmConfig, ButtonDesign(2, kLeftButton, "Back ")},
      {frmHS, ButtonDesign(3, kRightButton, "Complete setup")},
      {frmConfig, ButtonDesign(4, kRightButton, "Complete setup")},
      {frmHS, ButtonDesign(5, kLeftButton, "Quit Setup")},
  }};

 private:
  static constexpr Rect kPage{90, 90, 6300, 5010};
  static constexpr Twips kLeft = 2100;    ///< Left edge of the fields.
  static constexpr Twips kColumn = 1980;  ///< Width of the fields of one MSN of a handset.
  static constexpr Twips kSecond = kLeft + kColumn + 120;
  static constexpr Twips kLeftButton = 1980;
  static constexpr Twips kRightButton = 4140;
  static constexpr std::string_view kVoiceServices = "Std. or High Quality voice service";

  static Design TitleDesign(std::string_view name, int index) {
    return {.name = name, .index = index, .rect = {120, 90, 6060, 360}, .font = {.size = 10, .bold = true}};
  }
  static Design TextDesign(int index) {
    return {.name = "Label2", .index = index, .rect = {120, 495, 6060, 735}};
  }
  static Design FieldDesign(int index, Twips top, std::string_view caption) {
    return {.name = "Label2", .index = index, .rect = {120, top, 1920, 270}, .caption = caption};
  }
  static Design HsDesign(std::string_view name, int index, Twips top, std::string_view accessible,
                         std::string_view toolTip = {}) {
    return {.name = name,
            .index = index,
            .rect = {index == 0 ? kLeft : kSecond, top, kColumn, 360},
            .toolTip = toolTip,
            .accessible = accessible};
  }
  static Design OptionDesign(std::string_view name, int index, std::string_view caption, Twips top = 0) {
    return {.name = name, .index = index, .rect = {kLeft, top, 4080, 330}, .caption = caption};
  }
  static Design FootnoteDesign(std::string_view name, int index) {
    return {.name = name,
            .index = index,
            .rect = {120, 4170, 6060, 270},
            .caption = "*Access codes must be enabled system wide to take effect"};
  }
  static Design ButtonDesign(int index, Twips left, std::string_view caption) {
    return {.name = "cmdTop", .index = index, .rect = {left, 4530, 2040, 390}, .caption = caption};
  }

  enum class IdText { Empty, Invalid, InUse, Free };

  void ConnectEvents();
  void ConnectOption(CheckBox& box, bool frmNewISDN::*field, bool DeviceRecord::*recordField, bool marks);
  void Close(bool ok);

  void SetTitle(std::string_view title);
  void SetTitles();
  void TakeRequestedService();
  void FillServices();
  void PrepareFirstPage();
  void ShowFirstPage();
  void ChooseService();
  void ShowId();
  IdText TakeId();
  bool RefuseId(IdText entered);
  void LeaveId();
  void EnterId();
  void NextPage();

  void ShowOptions();
  void ShowMsn();
  void ShowSecondPage();
  void Back();
  void CompleteDevice();

  void ShowHandsetPage();
  void TakeName();
  void TakeNumbers(std::size_t i);
  void ChooseHandsetService(std::size_t i);
  void CompleteHandset();
  bool CheckHandset();
  void Refuse(TextBox& box, std::string_view message);

  const Platform platform_;
  const UsedNumbers& used_;
  const TerminalModel& model_;
  EntryMessages messages_{*this, platform_.dialogs};

  // The values before a change of an analog port.
  std::int32_t priorId_ = 0;
  std::string priorMsn_;
  ServiceType priorService_ = ServiceType::Speech;
  HandsetRecord firstRecord_;
  HandsetRecord secondRecord_;
  std::array<HandsetRecord*, 2> records_{&firstRecord_, &secondRecord_};
  bool idTested_ = true;  ///< The text of txtDECT has not changed since its last successful test.
};

}  // namespace corvex
