#include "devices/frmNewISDN.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "base/Text.h"

namespace corvex {

namespace {

constexpr std::int32_t kNoPriorId = 9999;
constexpr std::int32_t kFirstId = 1;
constexpr std::int32_t kLastId = 255;
constexpr std::string_view kUnnamed = "unset";

bool IsLark(TerminalModel model) {
  return model == TerminalModel::Lark || model == TerminalModel::LarkB;
}

/// The models with more voice services than 4.8K Speech.
bool HasHighQuality(TerminalModel model) {
  return model == TerminalModel::Heron || (model >= TerminalModel::Wren && model <= TerminalModel::Kestrel);
}

bool IsSerial(InterfaceType iface) {
  return iface == InterfaceType::Usb || iface == InterfaceType::Rs232A || iface == InterfaceType::Rs232B;
}

ServiceType DefaultService(InterfaceType iface, TerminalModel model) {
  if (!IsSerial(iface)) return ServiceType::Speech;
  return IsLark(model) ? ServiceType::Data9k6 : ServiceType::Udi;
}

/// The services that a device can have, in the order of their numbers.
std::vector<ServiceType> AllowedServices(InterfaceType iface, TerminalModel model, bool analog,
                                         bool handset) {
  using enum ServiceType;
  if (IsSerial(iface)) {
    if (IsLark(model)) return {Data9k6};
    return HasHighQuality(model) ? std::vector{Udi} : std::vector<ServiceType>{};
  }
  if (iface != InterfaceType::Isdn) return {};
  std::vector allowed{Speech};
  const bool data = !analog && !handset;
  if (HasHighQuality(model)) {
    allowed.insert(allowed.end(), {Speech64, Audio});
    if (data) allowed.insert(allowed.end(), {V110, Udi});
  }
  if (model <= TerminalModel::Albatross && (analog || !handset)) allowed.push_back(Fax);
  if (model == TerminalModel::Heron && data) allowed.insert(allowed.end(), {Udi128, V110At128});
  return allowed;
}

std::vector<std::string> Names(const std::vector<ServiceType>& services) {
  std::vector<std::string> names;
  for (const ServiceType service : services) names.emplace_back(ServiceName(service));
  return names;
}

bool IsVoice(ServiceType service) {
  return service == ServiceType::Speech || service == ServiceType::Speech64 || service == ServiceType::Audio;
}

/// The value of a hexadecimal text from 0 to FF.
std::optional<std::int16_t> HexByte(std::string_view text) {
  const auto value = ParseHex(text);
  if (!value || *value > kLastId) return std::nullopt;
  return static_cast<std::int16_t>(*value);
}

}  // namespace

frmNewISDN::frmNewISDN(Form& owner, const Platform& platform, const UsedNumbers& used,
                       const TerminalModel& model)
    : Form(platform.loop, platform.windows, "frmNewISDN", &owner),
      platform_(platform),
      used_(used),
      model_(model) {
  fixedSize = true;
  labHandset.caption = "Handset Setup Wizard";
  labHandsetText.caption =
      "The Handset can be set with two MSNs whose value and associated service can be independently "
      "controlled.";
  ConnectEvents();
}

void frmNewISDN::ConnectEvents() {
  const auto quit = [this] { Close(false); };
  queryUnload = quit;
  cmdTop[0].click = quit;
  cmdTop[5].click = quit;
  // A second press of Enter or of the mouse may arrive after the page has changed.
  const auto whileShown = [this](Frame& page, void (frmNewISDN::*action)()) {
    return [this, &page, action] {
      if (visible && page.visible && !messages_.Busy()) (this->*action)();
    };
  };
  cmdTop[1].click = whileShown(frmIntro, &frmNewISDN::NextPage);
  cmdTop[2].click = whileShown(frmConfig, &frmNewISDN::Back);
  cmdTop[3].click = whileShown(frmHS, &frmNewISDN::CompleteHandset);
  cmdTop[4].click = whileShown(frmConfig, &frmNewISDN::CompleteDevice);

  comboDECT[0].click = [this] { ChooseService(); };
  txtDECT[0].change = [this] { idTested_ = false; };
  txtDECT[0].lostFocus = [this] { LeaveId(); };
  keyDown = [this](KeyEvent& key) {
    constexpr int kEnter = 13;
    if (key.keyCode != kEnter || key.shift || key.ctrl || key.alt || !txtDECT[0].HasFocus()) return;
    key.handled = true;
    if (!key.repeated) Post([this] { EnterId(); });
  };

  ConnectOption(CheckEcho, &frmNewISDN::editEcho, &DeviceRecord::echoCancel, true);
  ConnectOption(CheckSTU, &frmNewISDN::editStu, &DeviceRecord::stuCapable, false);
  ConnectOption(CheckCharge, &frmNewISDN::editCharge, &DeviceRecord::chargeTone, true);
  for (CheckBox& box : CheckAccess) {
    ConnectOption(box, &frmNewISDN::editAccess, &DeviceRecord::accessCodes, true);
  }
  for (CheckBox& box : chkPro) {
    ConnectOption(box, &frmNewISDN::editPriority, &DeviceRecord::priority, false);
  }

  txtName.change = [this] { TakeName(); };
  // The box shows the stored name only now. Replacing its text while the user types could lose a key.
  txtName.lostFocus = [this] { txtName.SetText(firstRecord_.name); };
  for (std::size_t i = 0; i < records_.size(); ++i) {
    txtHsMsn[i].change = [this, i] { TakeNumbers(i); };
    tstHsDoid[i].change = [this, i] { TakeNumbers(i); };
    comboHS[i].click = [this, i] { ChooseHandsetService(i); };
  }
}

void frmNewISDN::ConnectOption(CheckBox& box, bool frmNewISDN::*field, bool DeviceRecord::*recordField,
                               bool marks) {
  box.click = [this, &box, field, recordField, marks] {
    if (marks && this->*field != box.value) firstChanged = secondChanged = true;
    this->*field = box.value;
    for (HandsetRecord* record : records_) record->*recordField = box.value;
  };
}

void frmNewISDN::Open() {
  constexpr Twips kWidth = kPage.width + 180 + kFrameWidth;
  constexpr Twips kHeight = kPage.height + 180 + kFrameHeight;
  Centre(owner()->rect, kWidth, kHeight);
  messages_.Drop();
  editOk = false;
  for (CheckBox& box : chkPro) box.visible = model_ == TerminalModel::Heron;
  for (Frame* page : {&frmIntro, &frmConfig, &frmHS}) page->visible = false;
  if (handsetMode) {
    ShowHandsetPage();
  } else {
    if (!editing && !IsAnalog()) editCharge = false;  // not the choice for an earlier device
    SetTitles();
    if (editing) {
      ShowSecondPage();
    } else {
      PrepareFirstPage();
      ShowFirstPage();
    }
  }
  ShowModal();
}

void frmNewISDN::Close(bool ok) {
  editOk = ok;
  visible = false;
}

void frmNewISDN::SetTitle(std::string_view title) {
  for (Label& label : Label1) label.caption = std::string(title);
}

/// Sets the texts that depend on the use of the window. The pages of an analog port replace some of them.
void frmNewISDN::SetTitles() {
  labIntro.caption =
      "From your registration document, enter the Terminal Id and service type for this device";
  labConfig.caption =
      "The Directory number or MSN must be entered on the actual device and below to facilitate routing of "
      "calls to this device";
  if (editing && IsAnalog()) {
    SetTitle("Analog port " + std::to_string(editTelPort) + " setup");
    caption = "Analog port setup";
    return;
  }
  std::string kind = "ISDN";
  std::string title = kind;
  if (editIface == InterfaceType::Usb) {
    title = kind = "USB";
  } else if (IsSerial(editIface)) {
    kind = "COM";
    title = "COM device";
  }
  SetTitle(title + (editing ? " Setup Editor" : " Setup Wizard"));
  caption = (editing ? "Edit " : "Add ") + kind + " device";
}

void frmNewISDN::PrepareFirstPage() {
  if (IsAnalog()) {
    priorId_ = editId;
    priorService_ = editService;
    priorMsn_ = editMsn;
    SetTitle("Change Port Setup");
    labIntro.caption = "To change the service type for this port select from the list below";
    caption = "Analog port setup";
  } else {
    editId = 0;
  }
  TakeRequestedService();
  FillServices();
  if (!IsAnalog()) {
    priorId_ = kNoPriorId;
    editId = used_.NextFreeId(editService, priorId_, model_);
  }
  ShowId();
}

/// On a Lark and on an unknown model, the request does not change the service. Intentional.
void frmNewISDN::TakeRequestedService() {
  using enum ServiceType;
  if (requestedService == None) {
    editService = DefaultService(editIface, model_);
    return;
  }
  if (HasHighQuality(model_)) editService = requestedService;
  if (!IsAnalog()) return;
  std::string_view terminal;
  if (HasHighQuality(model_) && !IsVoice(editService) && editService != Fax) terminal = "this terminal";
  if (IsLark(model_) && editService != Speech && editService != Fax) terminal = "Lark";
  if (terminal.empty()) return;
  messages_.Show(std::string(ServiceName(editService)) + " is illegal for " + std::string(terminal));
  editService = DefaultService(editIface, model_);
}

void frmNewISDN::FillServices() {
  auto services = AllowedServices(editIface, model_, IsAnalog(), editHandset != DeviceRecord::kNone);
  std::erase(services, editService);
  services.insert(services.begin(), editService);
  comboDECT[0].SetItems(Names(services));
  comboDECT[0].listIndex = 0;
}

void frmNewISDN::ShowFirstPage() {
  frmConfig.visible = false;
  frmIntro.visible = true;
  defaultButton = &cmdTop[1];
  cancelButton = &cmdTop[0];
  txtDECT[0].SetFocus();
  txtDECT[0].SelectAll();
}

void frmNewISDN::ShowId() {
  txtDECT[0].SetText(HexId(editId));
  idTested_ = true;
}

void frmNewISDN::ChooseService() {
  if (!frmIntro.visible) return;
  editService = ServiceFromName(comboDECT[0].Text());
  if (IsAnalog() && editService == priorService_ && editId == priorId_) return;
  editId = used_.NextFreeId(editService, priorId_, model_);
  ShowId();
}

/// Tests the text of the Id box. Stores a free Id.
frmNewISDN::IdText frmNewISDN::TakeId() {
  const std::string& text = txtDECT[0].Text();
  if (text.empty()) return IdText::Empty;
  const auto id = HexByte(text);
  if (!id || *id < kFirstId) return IdText::Invalid;
  if (used_.IdInUse(*id) && *id != priorId_) return IdText::InUse;
  editId = *id;
  return IdText::Free;
}

/// Returns false if the Id can be used. Otherwise explains why not, and the focus stays in the box.
bool frmNewISDN::RefuseId(IdText entered) {
  idTested_ = entered != IdText::InUse;
  if (entered == IdText::Empty || entered == IdText::Free) return false;
  const bool invalid = entered == IdText::Invalid;
  if (invalid) txtDECT[0].SetText("");
  Refuse(txtDECT[0], invalid ? "A hex value between 1 and FF"
                             : "The Id is already in use - please delete the existing entry first");
  return true;
}

/// The user can always quit: the test waits until the focus goes elsewhere or the user continues.
void frmNewISDN::LeaveId() {
  if (visible && frmIntro.visible && !cmdTop[0].HasFocus()) RefuseId(TakeId());
}

void frmNewISDN::EnterId() {
  if (!visible || !frmIntro.visible || messages_.Busy()) return;
  const IdText entered = TakeId();
  if (entered == IdText::Invalid) {
    RefuseId(entered);
    return;
  }
  // Intentional: the answer changes nothing. Moving the focus refuses an Id that is in use.
  if (entered == IdText::InUse) messages_.AskYesNo("Already registered - overwrite?");
  if (!visible) return;
  defaultButton = &cmdTop[1];
  comboDECT[0].SetFocus();
}

void frmNewISDN::NextPage() {
  // A default button clicks without moving the focus, and so do the buttons of some systems.
  if (!idTested_ && RefuseId(TakeId())) return;
  if (editId < kFirstId || editId > kLastId) {
    platform_.sound.Bell();
    txtDECT[0].SetFocus();
    return;
  }
  ShowSecondPage();
}

void frmNewISDN::ShowSecondPage() {
  frmIntro.visible = false;
  // Intentional: the first analog port keeps the standard texts.
  if (IsAnalog() && editTelPort != 0) {
    Label1[1].caption = "Analog Port Setup";
    labConfig.caption =
        "Select the MSN for this port, this value will then be automatically programmed into the device";
  }
  ShowMsn();
  ShowOptions();
  frmConfig.visible = true;
  defaultButton = &cmdTop[4];
  cancelButton = &cmdTop[2];
  txtIsdnMSN.SetFocus();
}

void frmNewISDN::ShowMsn() {
  if (editing) {
    priorMsn_ = editMsn;
  } else if (IsAnalog()) {
    editMsn = priorMsn_;
  } else {
    editEcho = IsVoice(editService);
    editMsn = used_.FirstFreeMsn(editService, false);
  }
  txtIsdnMSN.SetText(editMsn);
  txtIsdnMSN.SelectAll();
}

/// Shows the options that apply to the service, one below the other.
void frmNewISDN::ShowOptions() {
  const bool speech = editService == ServiceType::Speech;
  const bool access = speech || editService == ServiceType::Speech64;
  struct Option {
    CheckBox& box;
    bool value;
    bool applies;
  };
  constexpr Twips kFirst = 1860;
  constexpr Twips kPitch = 375;
  Twips top = kFirst;
  for (const Option& option : {
           Option{CheckEcho, editEcho, IsVoice(editService)},
           Option{CheckSTU, editStu, speech && editIface == InterfaceType::Isdn},
           Option{CheckCharge, editCharge, speech},
           Option{CheckAccess[1], editAccess, access},
           Option{chkPro[0], editPriority, access && model_ == TerminalModel::Heron},
       }) {
    option.box.value = option.value;
    option.box.visible = option.applies;
    Rect place = option.box.rect;
    place.top = top;
    option.box.rect = place;
    if (option.applies) top += kPitch;
  }
  labAccessCode.visible = access;
}

void frmNewISDN::Back() {
  if (editing) {
    Close(false);
  } else {
    ShowFirstPage();
  }
}

/// Intentional: a text that is not a number is ignored without a message, and an MSN in use is accepted.
void frmNewISDN::CompleteDevice() {
  if (!IsNumeric(txtIsdnMSN.Text())) return;
  editMsn = TrimBlanks(txtIsdnMSN.Text());
  Close(true);
}

void frmNewISDN::ShowHandsetPage() {
  caption = "Handset setup";
  firstChanged = secondChanged = false;
  ParseTagRecord(firstRecordTag, kTagSeparator, firstRecord_);
  ParseTagRecord(secondRecordTag, kTagSeparator, secondRecord_);
  for (std::size_t i = 0; i < records_.size(); ++i) {
    const HandsetRecord& record = *records_[i];
    txtHsMsn[i].SetText(txtHsMsn[i].tag = record.msn);
    tstHsDoid[i].SetText(tstHsDoid[i].tag = HexId(record.id));
    comboHS[i].tag = ServiceName(record.service);
    auto services = AllowedServices(InterfaceType::Isdn, model_, false, true);
    auto current = std::find(services.begin(), services.end(), record.service);
    if (current == services.end()) current = services.insert(services.begin(), record.service);
    comboHS[i].SetItems(Names(services));
    comboHS[i].listIndex = static_cast<int>(current - services.begin());
  }
  txtName.SetText(firstRecord_.name);
  chkPro[1].value = editPriority;
  CheckAccess[0].value = editAccess;
  frmHS.visible = true;
  defaultButton = &cmdTop[3];
  cancelButton = &cmdTop[5];
  txtName.SetFocus();
  txtName.SelectAll();
}

/// Blanks and separators would shift the fields of the entry, and so would an empty name.
void frmNewISDN::TakeName() {
  std::string name = UpperCase(txtName.Text());
  const auto separates = [](char c) {
    return static_cast<unsigned char>(c) <= ' ' || c == kTagSeparator || c == '|' || c == '\x7F';
  };
  std::replace_if(name.begin(), name.end(), separates, '-');
  if (name.empty()) name = kUnnamed;
  for (HandsetRecord* record : records_) record->name = name;
}

/// A text that is no Id leaves the entry's Id unchanged. CompleteHandset refuses it.
void frmNewISDN::TakeNumbers(std::size_t i) {
  records_[i]->msn = TrimBlanks(txtHsMsn[i].Text());
  records_[i]->id = HexByte(tstHsDoid[i].Text()).value_or(records_[i]->id);
}

void frmNewISDN::ChooseHandsetService(std::size_t i) {
  const std::string name = comboHS[i].Text();
  const ServiceType service = ServiceFromName(name);
  records_[i]->service = service;
  if (name == comboHS[i].tag) {
    txtHsMsn[i].SetText(txtHsMsn[i].tag);
    tstHsDoid[0].SetText(tstHsDoid[0].tag);  // intentional: for the second MSN too
  } else {
    txtHsMsn[i].SetText(used_.FirstFreeMsn(service, false));
    // Intentional: reads the Id as a decimal number, and shows the new one without a leading zero.
    const std::int32_t current = WholePrefix(tstHsDoid[i].Text());
    tstHsDoid[i].SetText(ShortHex(used_.NextFreeId(service, current, model_)));
  }
  TakeNumbers(0);
  TakeNumbers(1);
}

void frmNewISDN::CompleteHandset() {
  if (!CheckHandset()) return;
  const auto store = [](const HandsetRecord& record, std::string& tag, bool& changed) {
    std::string text = FormatTagRecord(record, kTagSeparator);
    if (text == tag) return;
    changed = true;
    tag = std::move(text);
  };
  store(firstRecord_, firstRecordTag, firstChanged);
  store(secondRecord_, secondRecordTag, secondChanged);
  Close(true);
}

/// Returns false, with a message, if an MSN or an Id of the handset cannot be used.
bool frmNewISDN::CheckHandset() {
  for (TextBox& box : txtHsMsn) {
    if (IsNumeric(box.Text())) continue;
    Refuse(box, "The MSN must be a decimal numeric");
    return false;
  }
  // Ids are compared as numbers: "A" and "0A" are the same Id.
  const std::array ids{HexByte(tstHsDoid[0].Text()), HexByte(tstHsDoid[1].Text())};
  if (ids[0] == ids[1] && (ids[0] || tstHsDoid[0].Text() == tstHsDoid[1].Text())) {
    Refuse(tstHsDoid[0], "Terminal Id must be unique - you have set them equal...");
    return false;
  }
  for (std::size_t i = 0; i < ids.size(); ++i) {
    if (!ids[i]) {
      Refuse(tstHsDoid[i], "The terminal id must be a value between 0 and FF (hex)");
      return false;
    }
    const auto isOwn = [&](const TextBox& box) { return ParseHex(box.tag) == *ids[i]; };
    if (used_.IdInUse(*ids[i]) && std::none_of(tstHsDoid.begin(), tstHsDoid.end(), isOwn)) {
      Refuse(tstHsDoid[i], "The terminal id is already in use");
      return false;
    }
  }
  return true;
}

/// Shows why the content of a box cannot be used, and puts the focus there.
void frmNewISDN::Refuse(TextBox& box, std::string_view message) {
  box.SetFocus();
  box.SelectAll();
  messages_.Show(std::string(message));
}

}  // namespace corvex
