#include "devices/frmNewISDN.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "base/ScopedFlag.h"
#include "base/Text.h"

namespace corvex {

namespace {

using S = ServiceType;
using M = TerminalModel;

constexpr std::string_view kIdText =
    "From your registration document, enter the Terminal Id and service type for this device";
constexpr std::string_view kMsnText =
    "The Directory number or MSN must be entered on the actual device and below to facilitate routing of "
    "calls "
    "to this device";
constexpr std::string_view kPortText = "To change the service type for this port select from the list below";
constexpr std::string_view kPortMsnText =
    "Select the MSN for this port, this value will then be automatically programmed into the device";
constexpr std::string_view kIdInUse = "The Id is already in use - please delete the existing entry first";
constexpr std::int32_t kNoPriorId = 9999;

bool IsId(std::int32_t id) {
  return id >= 1 && id <= 255;
}

bool IsOneOf(S service, std::initializer_list<S> services) {
  return std::find(services.begin(), services.end(), service) != services.end();
}

/// Shows the texts of some services, the first of them selected.
void Fill(ComboBox& combo, const std::vector<S>& services) {
  std::vector<std::string> items;
  for (const S service : services) items.emplace_back(ServiceName(service));
  combo.SetItems(std::move(items));
  combo.listIndex = 0;
}

/// A name that neither the terminal's line nor the tag form can mistake for several fields.
std::string NameOf(std::string_view typed) {
  std::string name = UpperCase(typed);
  for (char& c : name) {
    if (static_cast<unsigned char>(c) <= ' ' || c == ',' || c == '|') c = '-';
  }
  return name.empty() ? "-" : name;
}

}  // namespace

frmNewISDN::frmNewISDN(Form& owner, const Platform& platform, const UsedNumbers& used,
                       const TerminalModel& model)
    : Form(owner.loop(), owner.windows(), "frmNewISDN", &owner),
      platform_(platform),
      used_(used),
      model_(model) {
  fixedSize = true;
  titleHs.caption = "Handset Setup Wizard";
  ConnectEvents();
  ConnectOptions();
}

void frmNewISDN::ConnectEvents() {
  for (const std::size_t quit : {0U, 5U}) cmdTop[quit].click = [this] { Close(false); };
  cmdTop[1].click = [this] { Continue(); };
  cmdTop[2].click = [this] {
    if (editing) return Close(false);
    ShowPage(Page::Intro);
    txtId.SetFocus();
  };
  cmdTop[3].click = [this] { CompleteHandset(); };
  cmdTop[4].click = [this] { CompleteDevice(); };
  queryUnload = [this] { Close(false); };
  comboService.click = [this] { ChooseService(); };
  // The Id is tested when the user moves on to the service. The button to the next page tests it itself, and
  // the button that quits never does, so that nobody is caught in the box.
  comboService.gotFocus = [this] { IdRefused(false); };
  keyDown = [this](KeyEvent& key) {
    constexpr int kEnter = 13;
    if (key.keyCode != kEnter || !txtId.HasFocus() || !frmIntro.visible) return;
    key.handled = true;
    loop().Post([this] { EnterInId(); });
  };
  txtName.change = [this] {
    for (DeviceRecord& record : records_) record.name = NameOf(txtName.Text());
  };
  for (std::size_t i = 0; i < records_.size(); ++i) {
    txtHsMsn[i].change = [this, i] { records_[i].msn = TrimBlanks(txtHsMsn[i].Text()); };
    tstHsDoid[i].change = [this, i] {
      const auto id = ParseHex(tstHsDoid[i].Text());
      if (id && *id <= 255) records_[i].id = static_cast<std::int16_t>(*id);
    };
    comboHS[i].click = [this, i] { ChooseHandsetService(i); };
  }
}

void frmNewISDN::ConnectOptions() {
  const auto connect = [this](CheckBox& box, bool& field, bool DeviceRecord::*flag, bool marks) {
    box.click = [this, &box, &field, flag, marks] {
      const bool value = box.value;
      if (marks && value != field) firstChanged = secondChanged = true;
      field = value;
      for (DeviceRecord& record : records_) record.*flag = value;
    };
  };
  connect(CheckEcho, editEcho, &DeviceRecord::echoCancel, true);
  connect(CheckSTU, editStu, &DeviceRecord::stuCapable, false);
  connect(proIsdn, editPriority, &DeviceRecord::priority, false);
  connect(proHs, editPriority, &DeviceRecord::priority, false);
  connect(accessIsdn, editAccess, &DeviceRecord::accessCodes, true);
  connect(accessHs, editAccess, &DeviceRecord::accessCodes, true);
  connect(chargeIsdn, editCharge, &DeviceRecord::chargeTone, true);
}

bool frmNewISDN::ServiceIs(std::initializer_list<ServiceType> services) const {
  return IsOneOf(editService, services);
}

bool frmNewISDN::ModelIs(std::initializer_list<TerminalModel> models) const {
  return std::find(models.begin(), models.end(), model_) != models.end();
}

void frmNewISDN::Open() {
  Centre(owner()->rect, kPage.width + kFrameWidth, kPage.height + kFrameHeight);
  editOk = false;
  firstChanged = false;
  secondChanged = false;
  for (CheckBox* box : {&proIsdn, &proHs}) box->visible = ModelIs({M::Heron});
  if (handsetMode) {
    caption = titleHs.caption.Get();
    HandsetPage();
  } else {
    SetCaptions();
    if (editing) {
      ConfigPage();
    } else {
      FirstPage();
    }
  }
  ShowModal();
}

void frmNewISDN::Close(bool ok) {
  editOk = ok;
  visible = false;
}

void frmNewISDN::SetCaptions() {
  const std::string_view device = editIface == InterfaceType::Isdn  ? "ISDN"
                                  : editIface == InterfaceType::Usb ? "USB"
                                                                    : "COM";
  const std::string_view title = device == "COM" ? "COM device" : device;
  titleConfig.caption = std::string(title) + (editing ? " Setup Editor" : " Setup Wizard");
  caption = (editing ? "Edit " : "Add ") + std::string(device) + " device";
  if (editing && IsAnalog()) {
    titleConfig.caption = "Analog port " + std::to_string(editTelPort) + " setup";
    caption = "Analog port setup";
  }
  titleIntro.caption = titleConfig.caption.Get();
}

void frmNewISDN::ShowPage(Page page) {
  frmIntro.visible = page == Page::Intro;
  frmConfig.visible = page == Page::Config;
  frmHS.visible = page == Page::Handset;
  switch (page) {
    case Page::Intro:
      defaultButton = &cmdTop[1];
      cancelButton = &cmdTop[0];
      break;
    case Page::Config:
      defaultButton = &cmdTop[4];
      cancelButton = &cmdTop[2];
      break;
    case Page::Handset:
      defaultButton = &cmdTop[3];
      cancelButton = &cmdTop[5];
      break;
  }
}

// ---- The page for the Terminal Id and the service.

void frmNewISDN::FirstPage() {
  textIntro.caption = std::string(kIdText);
  if (IsAnalog()) {
    priorId_ = editId;
    priorService_ = editService;
    priorMsn_ = editMsn;
    titleIntro.caption = "Change Port Setup";
    textIntro.caption = std::string(kPortText);
    caption = "Analog port setup";
  } else {
    editId = 0;
  }
  TakeRequestedService();
  std::vector<S> services{editService};
  for (const S service : AllowedServices()) {
    if (service != editService) services.push_back(service);
  }
  Fill(comboService, services);
  if (!IsAnalog()) {
    priorId_ = kNoPriorId;
    editId = NextFreeId(editService, priorId_);
  }
  txtId.SetText(HexId(editId));
  txtId.SelectAll();
  ShowPage(Page::Intro);
  txtId.SetFocus();
}

ServiceType frmNewISDN::DefaultService() const {
  if (editIface == InterfaceType::Isdn) return S::Speech;
  return ModelIs({M::Lark, M::LarkB}) ? S::Data9k6 : S::Udi;
}

void frmNewISDN::TakeRequestedService() {
  if (requestedService == S::None) {
    editService = DefaultService();
    return;
  }
  const bool lark = ModelIs({M::Lark, M::LarkB});
  if (!lark && model_ != M::Unknown) editService = requestedService;
  const bool legal = lark ? ServiceIs({S::Speech, S::Fax})
                          : ServiceIs({S::Speech, S::Speech64, S::Audio, S::Fax}) || model_ == M::Unknown;
  if (!IsAnalog() || legal) return;
  platform_.dialogs.MessageBox(std::string(ServiceName(editService)) +
                               (lark ? " is illegal for Lark" : " is illegal for this terminal"));
  editService = DefaultService();
}

/// Returns the services that the user may choose, in the order of their numbers.
std::vector<ServiceType> frmNewISDN::AllowedServices() const {
  if (editIface != InterfaceType::Isdn) return {DefaultService()};
  const bool device = !IsAnalog() && editHandset == DeviceRecord::kNone;
  std::vector<S> services{S::Speech};
  if (ModelIs({M::Heron, M::Wren, M::Albatross, M::Petrel, M::Kestrel})) {
    services.insert(services.end(), {S::Speech64, S::Audio});
    if (device) services.insert(services.end(), {S::V110, S::Udi});
  }
  const bool mayFax = IsAnalog() || editHandset == DeviceRecord::kNone;
  if (mayFax && ModelIs({M::Heron, M::Lark, M::LarkB, M::Wren, M::Albatross})) services.push_back(S::Fax);
  if (device && ModelIs({M::Heron})) services.insert(services.end(), {S::Udi128, S::V110At128});
  return services;
}

void frmNewISDN::ChooseService() {
  if (!frmIntro.visible) return;
  editService = ServiceFromName(comboService.Text());
  if (IsAnalog() && editService == priorService_ && editId == priorId_) return;
  editId = NextFreeId(editService, priorId_);
  txtId.SetText(HexId(editId));
}

/// Tests the text of the box. Returns true if it is refused; the user has seen a message then. With `asks`,
/// an Id that is in use is not refused: the user is asked, and goes on whatever the answer.
bool frmNewISDN::IdRefused(bool asks) {
  if (refusing_) return true;
  const std::string& text = txtId.Text();
  if (text.empty()) return false;
  const auto id = ParseHex(text);
  if (!id || !IsId(*id)) {
    RefuseId("A hex value between 1 and FF");
    return true;
  }
  if (used_.IdInUse(*id) && *id != priorId_) {
    if (!asks) {
      RefuseId(kIdInUse);
      return true;
    }
    const ScopedFlag refusing(refusing_);
    platform_.dialogs.AskYesNo("Already registered - overwrite?");
    return false;
  }
  editId = *id;
  return false;
}

void frmNewISDN::RefuseId(std::string_view why) {
  const ScopedFlag refusing(refusing_);
  txtId.SetFocus();
  platform_.dialogs.MessageBox(why);
  if (why != kIdInUse) txtId.SetText({});
  txtId.SelectAll();
}

/// Intentional: an Id in use is asked about, and then refused by the test that follows the move of the focus.
void frmNewISDN::EnterInId() {
  if (!visible || IdRefused(true)) return;
  comboService.SetFocus();
  defaultButton = &cmdTop[1];
}

void frmNewISDN::Continue() {
  if (IdRefused(false)) return;
  if (!IsId(editId)) {
    platform_.sound.Bell();
    txtId.SetFocus();
    return;
  }
  ConfigPage();
}

// ---- The page for the MSN and the options.

void frmNewISDN::ConfigPage() {
  const bool speech = editService == S::Speech;
  const bool coded = ServiceIs({S::Speech, S::Speech64});
  const bool voice = ServiceIs({S::Speech, S::Speech64, S::Audio});
  CheckSTU.value = editStu;
  CheckEcho.value = editEcho;
  chargeIsdn.value = editCharge;
  chargeIsdn.visible = speech;
  proIsdn.value = editPriority;
  proIsdn.visible = coded && ModelIs({M::Heron});
  accessIsdn.value = editAccess;
  accessIsdn.visible = coded;
  labAccessCode.visible = coded;
  CheckEcho.visible = voice;
  CheckSTU.visible = speech && editIface == InterfaceType::Isdn;
  textConfig.caption = std::string(kMsnText);
  if (editTelPort != DeviceRecord::kNone && editTelPort != 0) {  // intentional: Tel 1 keeps the usual texts
    titleConfig.caption = "Analog Port Setup";
    textConfig.caption = std::string(kPortMsnText);
  }
  if (editing) {
    priorMsn_ = editMsn;
  } else if (IsAnalog()) {
    editMsn = priorMsn_;
  } else {
    editEcho = voice;
    CheckEcho.value = voice;
    editMsn = used_.FirstFreeMsn(editService, false);
  }
  txtIsdnMSN.SetText(editMsn);
  txtIsdnMSN.SelectAll();
  ShowPage(Page::Config);
  txtIsdnMSN.SetFocus();
}

void frmNewISDN::CompleteDevice() {
  // Intentional: no message. An MSN that is in use is accepted.
  if (!IsNumeric(txtIsdnMSN.Text())) return txtIsdnMSN.SetFocus();
  editMsn = TrimBlanks(txtIsdnMSN.Text());  // a blank would shift the fields of the terminal's line
  Close(true);
}

// ---- The page for a handset.

void frmNewISDN::HandsetPage() {
  const std::array<const std::string*, 2> tags{&firstRecordTag, &secondRecordTag};
  for (std::size_t i = 0; i < records_.size(); ++i) {
    DeviceRecord& record = records_[i];
    ParseTagRecord(*tags[i], kTagSeparator, record);
    txtHsMsn[i].SetText(record.msn);
    txtHsMsn[i].tag = record.msn;
    tstHsDoid[i].SetText(HexId(record.id));
    tstHsDoid[i].tag = HexId(record.id);
    std::vector<S> services{record.service};
    for (const S service : {S::Speech, S::Speech64, S::Audio}) {
      const bool allowed =
          service == S::Speech || ModelIs({M::Heron, M::Wren, M::Albatross, M::Petrel, M::Kestrel});
      if (allowed && service != record.service) services.push_back(service);
    }
    Fill(comboHS[i], services);
    comboHS[i].tag = ServiceName(record.service);
  }
  txtName.SetText(records_[0].name);
  proHs.value = editPriority;
  accessHs.value = editAccess;
  ShowPage(Page::Handset);
  txtName.SelectAll();
  txtName.SetFocus();
}

void frmNewISDN::ChooseHandsetService(std::size_t which) {
  DeviceRecord& record = records_[which];
  const std::string name = comboHS[which].Text();
  record.service = ServiceFromName(name);
  if (name == comboHS[which].tag) {
    txtHsMsn[which].SetText(txtHsMsn[which].tag);
    tstHsDoid[0].SetText(tstHsDoid[0].tag);  // intentional: the first box, also for the second entry
  } else {
    txtHsMsn[which].SetText(used_.FirstFreeMsn(record.service, false));
    // Intentional: the text is read as decimal, and the new one has no leading zero.
    const std::int32_t current = WholePrefix(tstHsDoid[which].Text());
    tstHsDoid[which].SetText(ShortHex(NextFreeId(record.service, current)));
  }
  for (std::size_t i = 0; i < records_.size(); ++i) {
    txtHsMsn[i].change();
    tstHsDoid[i].change();
  }
}

bool frmNewISDN::HandsetIdRefused(std::size_t which) {
  TextBox& box = tstHsDoid[which];
  const auto id = ParseHex(box.Text());
  std::string_view why;
  if (!id || *id > 255) {
    why = "The terminal id must be a value between 0 and FF (hex)";
  } else if (used_.IdInUse(*id) && box.Text() != box.tag && box.Text() != tstHsDoid[1 - which].tag) {
    why = "The terminal id is already in use";
  }
  if (why.empty()) return false;
  box.SetFocus();
  platform_.dialogs.MessageBox(why);
  return true;
}

void frmNewISDN::CompleteHandset() {
  for (TextBox& box : txtHsMsn) {
    if (IsNumeric(box.Text())) continue;
    platform_.dialogs.MessageBox("The MSN must be a decimal numeric");
    box.SetFocus();
    return;
  }
  if (ParseHex(tstHsDoid[0].Text()) && ParseHex(tstHsDoid[0].Text()) == ParseHex(tstHsDoid[1].Text())) {
    tstHsDoid[0].SetFocus();
    platform_.dialogs.MessageBox("Terminal Id must be unique - you have set them equal...");
    return;
  }
  if (HandsetIdRefused(0) || HandsetIdRefused(1)) return;
  const auto take = [](const DeviceRecord& record, std::string& tag, bool& changed) {
    std::string now = FormatTagRecord(record, kTagSeparator);
    if (now == tag) return;
    changed = true;
    tag = std::move(now);
  };
  take(records_[0], firstRecordTag, firstChanged);
  take(records_[1], secondRecordTag, secondChanged);
  Close(true);
}

}  // namespace corvex
