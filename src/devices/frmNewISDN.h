#pragma once

#include <array>
#include <string>
#include <string_view>

#include "devices/DeviceRecord.h"
#include "devices/UsedNumbers.h"
#include "forms/Controls.h"
#include "platform/Platform.h"
#include "state/TerminalModel.h"

namespace corvex {

/// Adds and edits ISDN devices, sets up analog ports and configures handsets. Shown modally, with one of
/// three pages at a time. The window only gathers the values: the caller writes them to the terminal.
class frmNewISDN : public Form {
 public:
  frmNewISDN(Form& owner, const Platform& platform, const UsedNumbers& used, const TerminalModel& model);
  ~frmNewISDN() override { Withdraw(); }

  /// Shows the page for the values that the caller has set. Returns when the user has closed the window.
  void Open();

  // Set by the caller before Open, and read by the caller after it. The values stay until the next use.
  InterfaceType editIface = InterfaceType::Isdn;
  std::int32_t editId = 0;
  ServiceType editService = ServiceType::Speech;
  std::string editMsn;
  bool editOk = false;  ///< The user has completed the page.
  /// The service that a new device or a port starts with. None: the default of the interface.
  ServiceType requestedService = ServiceType::Speech;
  bool editEcho = true;
  bool editStu = false;
  bool editPriority = false;
  bool editAccess = true;
  bool editCharge = false;
  std::int16_t editTelPort = DeviceRecord::kNone;
  std::int16_t editHandset = DeviceRecord::kNone;
  bool handsetMode = false;     ///< Shows the page for a handset.
  std::string firstRecordTag;   ///< A handset's first entry in its tag form.
  std::string secondRecordTag;  ///< A handset's second entry in its tag form.
  bool firstChanged = false;
  bool secondChanged = false;
  bool editing = false;  ///< An existing device is edited.

  // The page for the Terminal Id and the service.
  Frame frmIntro{*this, {.name = "frmIntro", .rect = kPage, .visible = false}};
  Label titleIntro{frmIntro, TitleDesign(0)};
  Label textIntro{frmIntro, {.name = "Label2", .index = 11, .rect = {180, 690, 6540, 600}}};
  Label lblId{frmIntro,
              {.name = "Label2", .index = 1, .rect = {180, 1650, 1860, 300}, .caption = "Terminal Id (hex)"}};
  TextBox txtId{frmIntro, {.name = "txtDECT", .index = 0, .rect = {2100, 1590, 1200, 360}}};
  Label lblService{frmIntro,
                   {.name = "Label2", .index = 2, .rect = {180, 2190, 1860, 300}, .caption = "Service"}};
  ComboBox comboService{frmIntro, {.name = "comboDECT", .index = 0, .rect = {2100, 2130, 3000, 360}}};

  // The page for the MSN and the options.
  Frame frmConfig{*this, {.name = "frmConfig", .rect = kPage, .visible = false}};
  Label titleConfig{frmConfig, TitleDesign(1)};
  Label textConfig{frmConfig, {.name = "Label2", .index = 0, .rect = {180, 690, 6540, 600}}};
  Label lblMsn{frmConfig, {.name = "Label2", .index = 3, .rect = {180, 1530, 720, 300}, .caption = "MSN"}};
  TextBox txtIsdnMSN{frmConfig, {.name = "txtIsdnMSN", .rect = {960, 1470, 1500, 360}}};
  CheckBox CheckEcho{frmConfig, OptionDesign("CheckEcho", -1, 0, "Echo Cancellation")};
  CheckBox CheckSTU{frmConfig, OptionDesign("CheckSTU", -1, 1, "Allow STU")};
  CheckBox proIsdn{frmConfig, OptionDesign("chkPro", 0, 2, "Professional Priority Service")};
  CheckBox accessIsdn{frmConfig, OptionDesign("CheckAccess", 1, 3, "Require Access Code per call*")};
  CheckBox chargeIsdn{frmConfig, OptionDesign("CheckCharge", 2, 4, "Apply charge tone*")};
  Label labAccessCode{frmConfig,
                      {.name = "labAccessCode",
                       .index = 8,
                       .rect = {180, 3870, 6540, 300},
                       .caption = "*Access codes must be enabled system wide to take effect"}};

  // The page for a handset.
  Frame frmHS{*this, {.name = "frmHS", .rect = kPage, .visible = false}};
  Label titleHs{frmHS, TitleDesign(2)};
  Label textHs{frmHS,
               {.name = "Label2",
                .index = 4,
                .rect = {180, 690, 6540, 600},
                .caption = "The Handset can be set with two MSNs whose value and associated service can be "
                           "independently controlled."}};
  Label lblName{frmHS,
                {.name = "Label2", .index = 5, .rect = {180, 1470, 1860, 300}, .caption = "Name/Location"}};
  TextBox txtName{frmHS, {.name = "txtName", .rect = {2100, 1410, 3000, 360}}};
  Label lblHsMsn{frmHS, HeadDesign(6, 180, "MSN")};
  Label lblHsId{frmHS, HeadDesign(7, 2100, "Terminal Id (hex)")};
  Label lblHsService{frmHS, HeadDesign(8, 4020, "Service")};
  std::array<TextBox, 2> txtHsMsn{{{frmHS, HsDesign("txtHsMsn", 0, 180, "First MSN")},
                                   {frmHS, HsDesign("txtHsMsn", 1, 180, "Second MSN")}}};
  std::array<TextBox, 2> tstHsDoid{
      {{frmHS, HsDesign("tstHsDoid", 0, 2100, "Terminal Id of the first MSN")},
       {frmHS, HsDesign("tstHsDoid", 1, 2100, "Terminal Id of the second MSN")}}};
  std::array<ComboBox, 2> comboHS{{{frmHS, HsDesign("comboHS", 0, 4020, "Service of the first MSN")},
                                   {frmHS, HsDesign("comboHS", 1, 4020, "Service of the second MSN")}}};
  CheckBox proHs{frmHS,
                 {.name = "chkPro",
                  .index = 1,
                  .rect = {180, 3180, 4800, 300},
                  .caption = "Professional Priority Service"}};
  CheckBox accessHs{frmHS,
                    {.name = "CheckAccess",
                     .index = 0,
                     .rect = {180, 3540, 4800, 300},
                     .caption = "Require Access Code per call*"}};
  Label labAccessHs{frmHS,
                    {.name = "labAccessCode",
                     .index = 9,
                     .rect = {180, 3870, 6540, 300},
                     .caption = "*Access codes must be enabled system wide to take effect"}};

  std::array<Button, 6> cmdTop{{
      {frmIntro, ButtonDesign(0, 2640, "Quit Setup")},
      {frmIntro, ButtonDesign(1, 4560, "Continue with setup")},
      {frmConfig, ButtonDesign(2, 2640, "Back ")},
      {frmHS, ButtonDesign(3, 4560, "Complete setup")},
      {frmConfig, ButtonDesign(4, 4560, "Complete setup")},
      {frmHS, ButtonDesign(5, 2640, "Quit Setup")},
  }};

 private:
  static constexpr Rect kPage{0, 0, 6900, 4860};
  static Design TitleDesign(int index) {
    return {
        .name = "Label1", .index = index, .rect = {180, 180, 6540, 390}, .font = {.size = 12, .bold = true}};
  }
  static Design OptionDesign(std::string_view name, int index, int row, std::string_view text) {
    return {.name = name, .index = index, .rect = {180, 2010 + row * 360, 4800, 300}, .caption = text};
  }
  static Design HeadDesign(int index, Twips left, std::string_view text) {
    return {.name = "Label2", .index = index, .rect = {left, 1920, 1860, 300}, .caption = text};
  }
  static Design HsDesign(std::string_view name, int index, Twips left, std::string_view accessible) {
    return {.name = name,
            .index = index,
            .rect = {left, 2220 + index * 450, left > 4000 ? 2700 : 1500, 360},
            .toolTip = left > 4000 ? "Std. or High Quality voice service" : "",
            .accessible = accessible};
  }
  static Design ButtonDesign(int index, Twips left, std::string_view text) {
    return {.name = "cmdTop",
            .index = index,
            .rect = {left, 4320, index % 2 == 0 && index != 4 ? 1800 : 2160, 390},
            .caption = text};
  }

  enum class Page { Intro, Config, Handset };

  void ConnectEvents();
  void ConnectOptions();
  bool IsAnalog() const { return editTelPort != DeviceRecord::kNone; }
  bool ServiceIs(std::initializer_list<ServiceType> services) const;
  bool ModelIs(std::initializer_list<TerminalModel> models) const;

  void SetCaptions();
  void ShowPage(Page page);
  void FirstPage();
  void TakeRequestedService();
  ServiceType DefaultService() const;
  std::vector<ServiceType> AllowedServices() const;
  void ChooseService();
  bool IdRefused(bool asks);
  void RefuseId(std::string_view why);
  void EnterInId();
  void Continue();
  void ConfigPage();
  void CompleteDevice();

  void HandsetPage();
  void ChooseHandsetService(std::size_t which);
  void CompleteHandset();
  bool HandsetIdRefused(std::size_t which);
  std::int32_t NextFreeId(ServiceType service, std::int32_t current) const {
    return used_.NextFreeId(service, current, model_);
  }
  void Close(bool ok);

  const Platform& platform_;
  const UsedNumbers& used_;
  const TerminalModel& model_;
  std::int32_t priorId_ = 0;
  std::string priorMsn_;
  ServiceType priorService_ = ServiceType::Speech;
  std::array<DeviceRecord, 2> records_;  ///< The two entries of a handset.
  bool refusing_ = false;                ///< A message about the Terminal Id is shown.
};

}  // namespace corvex
