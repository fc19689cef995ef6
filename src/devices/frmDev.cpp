#include "devices/frmDev.h"

#include <array>
#include <cstdio>
#include <utility>

#include "base/ScopedFlag.h"
#include "base/Text.h"

namespace corvex {

namespace {

constexpr std::string_view kTitle = "Device Manager";
constexpr Color kNodeColor = 0xFF0F00;  // red 0, green 15, blue 255

std::string Clock(std::int64_t localSeconds) {
  const auto ofDay = static_cast<int>(localSeconds % 86400);
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", ofDay / 3600, ofDay / 60 % 60, ofDay % 60);
  return text.data();
}

}  // namespace

frmDev::frmDev(Form& owner, Parts parts)
    : Form(owner.loop(), owner.windows(), "frmDev", &owner),
      p_(std::move(parts)),
      config_(loop(), p_.link, p_.received, p_.platform.dialogs),
      access_(loop(), p_.link, p_.received),
      backups_(p_.settings.files(), p_.settings.InAppFolder("backups")),
      editor_(*this, p_.platform, content_.used, p_.model),
      comSetup_(*this, p_.platform, content_.used),
      login_(*this) {
  caption = kTitle;
  Centre(owner.rect, kInnerWidth + kFrameWidth, kInnerHeight + kFrameHeight + kMenuBarHeight);
  const TerminalModel model = p_.model;
  const bool lark = model == TerminalModel::Lark || model == TerminalModel::LarkB;
  if (lark) {
    frmPorts.caption = "Serial Ports - 9K6 UDI";
  } else if (model != TerminalModel::Unknown) {
    frmPorts.caption = "Serial Ports - 64K UDI";
  }
  for (TreeView* tree : {&treedev, &treePOTS, &treeQuil}) tree->foreColor = kNodeColor;
  ConnectEvents();
  ConnectTrees();
  treedev.SetFocus();
  scaler_.Register(*this);
}

void frmDev::ConnectEvents() {
  const auto unlessWaiting = [this](auto action) {
    return [this, action] {
      if (!Waits()) action();
    };
  };
  const EventLoop::Task add = Alone([this] { Add(); });
  const EventLoop::Task refresh = Alone([this] { Refresh(); });
  Toolbar1.buttonClick = [this, add, refresh](int button) {
    if (button == 1) add();
    if (button == 3) refresh();
    // The cross of the window closes it even in a wait.
    if (button == 5 && !Waits()) Close();
  };
  mnuSave.click = Alone(unlessWaiting([this] { Save(); }));
  mnuLoad.click = Alone(unlessWaiting([this] { Load(); }));
  mnuFactory.click = Alone([this] { RestoreFactory(); });
  mnuPrint.click = Alone([this] { PrintSummary(); });
  mnuPopAdd.click = Alone([this] {
    if (VerifyOwner()) AddOnCategory();  // intentional: the level is checked three times in a row
  });
  mnuPopEdit.click = Alone(unlessWaiting([this] { Edit(treedev); }));
  mnuPopRemove.click = Alone(unlessWaiting([this] { Remove(); }));
  telChange.click = Alone([this] { Edit(treePOTS); });
  EditHs.click = Alone([this] { EditHandset(); });
  HsIdentify.click = Alone([this] { TestHandset(); });
  tstBuzzer.click = Alone([this] { TestBuzzer(); });
  for (std::size_t port = 0; port < cmdPortEdit.size(); ++port)
    cmdPortEdit[port].click = Alone([this, port] { EditPort(port); });
  Timer1.tick = [this] {
    Timer1.enabled = false;
    if (state_ != DeviceManagerState::Start) return;
    state_ = DeviceManagerState::FirstRead;
    Alone([this] { Refresh(); })();
  };
  tmrUpdate.tick = refresh;
  config_.onProgress = [this] { ShowProgress(); };
  queryUnload = [this] { Close(); };
  resize = [this] { LayOut(); };
}

void frmDev::ConnectTrees() {
  treedev.nodeClick = [this] { OnNodeClick(); };
  treedev.contextMenu = [this] { mnuOptions.PopUp(); };
  treePOTS.contextMenu = [this] {
    if (treePOTS.tree().Has(treePOTS.selected)) mnuTel.PopUp();
  };
  treeQuil.contextMenu = [this] {
    if (!treeQuil.tree().Has(treeQuil.selected)) return;
    DeviceRecord record;
    tstBuzzer.enabled = HandsetRecord(true, record) && record.distressBox;
    mnuHs.PopUp();
  };
  keyDown = [this, remove = Alone([this] { Remove(); }),
             add = Alone([this] { AddOnCategory(); })](KeyEvent& key) {
    constexpr int kBackspace = 8;
    constexpr int kInsert = 45;
    constexpr int kDelete = 46;
    if (!treedev.HasFocus() || key.ctrl || key.alt || key.shift || key.repeated) return;
    if (key.keyCode != kBackspace && key.keyCode != kInsert && key.keyCode != kDelete) return;
    key.handled = true;
    loop().Post(key.keyCode == kInsert ? add : remove);
  };
}

EventLoop::Task frmDev::Alone(EventLoop::Task exchange) {
  return [this, exchange = std::move(exchange)] {
    if (busy_ || state_ == DeviceManagerState::Closing) return;
    /// Offers the other exchanges again, even if this one is abandoned.
    struct Busy : ScopedFlag {
      explicit Busy(frmDev& form) : ScopedFlag(form.busy_), window(form) { window.OfferExchanges(false); }
      ~Busy() { window.OfferExchanges(true); }
      Busy(const Busy&) = delete;
      Busy& operator=(const Busy&) = delete;
      frmDev& window;
    };
    const Busy busy(*this);
    exchange();
  };
}

void frmDev::OfferExchanges(bool offered) {
  Toolbar1.SetEnabled(1, offered);
  Toolbar1.SetEnabled(3, offered);
  for (MenuItem* entry : {&mnuLoad, &mnuSave, &mnuFactory, &mnuPrint}) entry->enabled = offered;
  for (Button& edit : cmdPortEdit) edit.enabled = offered;
}

/// The scaler does not know tool bars and status bars. They follow the size of the window here.
void frmDev::LayOut() {
  if (windowState == WindowState::Minimized) return;
  const Twips width = InnerWidth();
  const Twips height = InnerHeight();
  scaler_.AdjustControls(*this, height, width);
  const auto scaled = [height](Twips size) {
    return static_cast<Twips>(std::int64_t{size} * height / kInnerHeight);
  };
  Toolbar1.rect = Rect{0, 0, width, scaled(480)};
  StatusBar1.rect = Rect{0, height - scaled(330), width, scaled(330)};
}

void frmDev::Open() {
  loop().Post([this] { Alone([this] { BeginSession(); })(); });
  ShowModal();
}

void frmDev::BeginSession() {
  if (!config_.EnterConfigMode()) {
    ShowAccessLevel("Unknown");
    ShowStatus("Configuration Interface Unavailable");
    return;
  }
  ShowStatus("Wait..");
  pointer = Pointer::Hourglass;
  openedAsOwner_ = access_.ReadOwnerLevel();
  RefreshAccessTitle();
  Timer1.enabled = true;
}

/// Closes the window, even in the middle of an exchange.
void frmDev::Close() {
  if (std::exchange(state_, DeviceManagerState::Closing) == DeviceManagerState::Closing) return;
  Timer1.enabled = false;
  tmrUpdate.enabled = false;
  loop().AbandonWaits([this] {
    Farewell();
    scaler_.DisableRez();
    visible = false;
  });
}

void frmDev::Farewell() {
  if (std::exchange(farewellSent_, true)) return;
  if (!openedAsOwner_) config_.LeaveOwnerMode();
  config_.Quit();  // intentional: after a restart too
}

// ---- What the window shows.

void frmDev::ShowProgress() {
  const ConfigProgress& progress = config_.progress();
  std::string text = verdict_;
  if (progress.total > 0) text = std::to_string(progress.written) + " of " + std::to_string(progress.total);
  if (progress.repeats > 0) {
    if (progress.total > 0) text += ", ";
    if (progress.total == 0) text.clear();
    text += "waiting for " + progress.awaited + " since " + Clock(progress.since) + ", requested again " +
            std::to_string(progress.repeats) + (progress.repeats == 1 ? " time" : " times");
  }
  StatusBar1.SetText(2, text);
}

void frmDev::ShowAccessLevel(std::string_view level) {
  caption = std::string(kTitle) + " (" + std::string(level) + " level access)";
}

void frmDev::RefreshAccessTitle() {
  ShowAccessLevel(access_.ownerLevel() ? "Owner" : "User");
}

bool frmDev::VerifyOwner() {
  if (!config_.ProbeConfig()) {
    Close();
    return false;
  }
  const bool owner = access_.ReadOwnerLevel();
  RefreshAccessTitle();
  if (owner) return true;
  login_.Open();
  if (!login_.loginOk) return false;
  ShowStatus("Verifying your identity");
  const bool accepted = access_.TryOwnerPassword(login_.TakePassword());
  if (accepted) {
    ShowStatus("");
    RefreshAccessTitle();
    return true;
  }
  p_.platform.dialogs.Notify({.text = "Invalid Password, try again!", .title = "Login", .owner = this});
  PauseThrough(loop(), 3);
  return false;
}

void frmDev::Refresh() {
  ReloadDevices();
  ResetContextMenu();
}

void frmDev::ReloadDevices() {
  pointer = Pointer::Hourglass;
  ShowStatus("Reading configuration...");
  RebuildTrees();
  ShowStatus("Ready");
  pointer = Pointer::Normal;
  state_ = DeviceManagerState::Ready;
}

/// Returns whether the configuration has been read completely.
bool frmDev::RebuildTrees() {
  constexpr int kBreath = 256;  // entries between two looks at the window's events
  const bool focused = treedev.HasFocus();
  treedev.visible = false;
  content_.Reset(p_.model);
  ShowTrees();
  const bool complete = config_.ReadConfig();
  bool duplicate = false;
  int count = 0;
  for (const std::string& line : config_.configLines) {
    DeviceRecord record;
    ParseWireRecord(line, record);
    duplicate |= content_.Add(record) == DeviceTree::Place::DuplicatePort;
    if (++count % kBreath == 0) LetEventsRun(loop());
  }
  ShowTrees();
  treedev.selected = treedev.tree().First();
  treedev.visible = true;
  if (focused) treedev.SetFocus();
  // Once, however many duplicates there are.
  if (duplicate) {
    p_.platform.dialogs.MessageBox(
        "Config Error - Dupliacte ta port: possibly incorrect version of this program used");
  }
  return complete;
}

void frmDev::ShowTrees() {
  treedev.SetTree(content_.devices);
  treePOTS.SetTree(content_.ports);
  treeQuil.SetTree(content_.handsets);
  for (std::size_t port = 0; port < lblPortDesc.size(); ++port) {
    lblPortDesc[port].caption = content_.serial[port].caption;
    lblPortDesc[port].tag = content_.serial[port].tag;
  }
}

void frmDev::ResetContextMenu() {
  mnuPopConfigure.enabled = false;
  mnuPopEdit.enabled = false;
  mnuPopRemove.enabled = false;
  mnuPopAdd.caption = "Add ISDN device";
}

void frmDev::OnNodeClick() {
  if (!treedev.tree().Has(treedev.selected)) return;
  const std::string& key = treedev.tree()[treedev.selected].key;
  mnuPopConfigure.enabled = false;
  mnuPopEdit.enabled = false;
  if (!TagOf(treedev).empty()) {
    mnuPopEdit.enabled = true;
    mnuPopRemove.enabled = true;  // intentional: stays enabled until the next full read
  }
  mnuPopAdd.caption = "Add ISDN device";
  // Intentional: the keys of devices begin with their Id. Ids that begin with a letter keep the entry.
  mnuPopAdd.visible = key.empty() || !IsDigit(key.front());
  if (!mnuPopAdd.visible) return;
  const ServiceType service = ServiceOfKey(key);
  if (service != ServiceType::None)
    mnuPopAdd.caption = "Add ISDN device (" + std::string(ServiceName(service)) + ')';
}

const std::string& frmDev::TagOf(const TreeView& tree) const {
  static const std::string kEmpty;
  return tree.tree().Has(tree.selected) ? tree.tree()[tree.selected].tag : kEmpty;
}

void frmDev::SelectDevice(std::int32_t id) {
  for (int node = 0; node < treedev.tree().Count(); ++node) {
    DeviceRecord record;
    if (!RecordOfTag(treedev.tree()[node].tag, record) || record.id != id) continue;
    treedev.EnsureVisible(node);
    treedev.selected = node;
    treedev.SetExpanded(node, true);
    return;
  }
}

// ---- Adding, editing and removing entries.

void frmDev::AddOnCategory() {
  if (!VerifyOwner()) return;
  editor_.requestedService = treedev.tree().Has(treedev.selected)
                                 ? ServiceOfCategory(treedev.tree()[treedev.selected].key)
                                 : ServiceType::None;
  Add();
}

void frmDev::Add() {
  if (!VerifyOwner() || Waits()) return;
  editor_.editing = false;
  editor_.editIface = InterfaceType::Isdn;
  editor_.editStu = false;
  editor_.editPriority = false;
  editor_.editTelPort = DeviceRecord::kNone;
  editor_.editHandset = DeviceRecord::kNone;
  editor_.handsetMode = false;
  editor_.editAccess = true;
  // Intentional: requestedService stays as the last use has left it.
  editor_.Open();
  IsdnExit();
}

void frmDev::Edit(const TreeView& tree) {
  DeviceRecord record;
  if (!RecordOfTag(TagOf(tree), record)) {
    p_.platform.dialogs.MessageBox("Cannot Edit this category indicator");
    return;
  }
  if (record.iface == InterfaceType::None || !VerifyOwner()) return;
  const bool analog = record.telPort != DeviceRecord::kNone;
  editor_.handsetMode = false;
  editor_.editIface = InterfaceType::Isdn;  // intentional: in every case
  editor_.requestedService = analog ? record.service : ServiceType::None;
  editor_.editing = !analog;
  editor_.editId = record.id;
  editor_.editMsn = record.msn;
  editor_.editService = record.service;
  editor_.editEcho = record.echoCancel;
  editor_.editStu = record.stuCapable;
  editor_.editHandset = record.handset;
  editor_.editTelPort = record.telPort;
  editor_.editPriority = record.priority;
  editor_.editAccess = record.accessCodes;
  editor_.editCharge = record.chargeTone;
  editor_.Open();
  IsdnExit();
}

void frmDev::EditHandset() {
  if (!VerifyOwner()) return;
  const Tree& tree = treeQuil.tree();
  int node = treeQuil.selected;
  if (!tree.Has(node)) return;
  if (!IsAHandsetNode(tree[node].text)) node = tree.Parent(node);
  const int first = tree.Has(node) ? tree.FirstChild(node) : Tree::kNone;
  const int second = tree.Has(first) ? tree.Next(first) : Tree::kNone;
  DeviceRecord record;
  if (!tree.Has(second) || !RecordOfTag(tree[first].tag, record) || record.iface == InterfaceType::None ||
      !RecordOfTag(tree[second].tag, record) || record.iface == InterfaceType::None) {
    return;
  }
  editor_.firstRecordTag = tree[first].tag;
  editor_.secondRecordTag = tree[second].tag;
  editor_.editPriority = record.priority;
  editor_.editAccess = record.accessCodes;
  editor_.editCharge = record.chargeTone;
  editor_.handsetMode = true;
  editor_.Open();
  HsExit();
}

void frmDev::EditPort(std::size_t port) {
  if (!VerifyOwner()) return;
  DeviceRecord record;
  if (!RecordOfTag(lblPortDesc[port].tag, record)) return;
  comSetup_.Open(record, static_cast<int>(port));
  ComSetup_Exit();
}

void frmDev::IsdnExit() {
  if (!editor_.editOk || !MakeBackupOnce()) return;
  pointer = Pointer::Hourglass;
  ShowStatus("Writing configuration");
  DeviceRecord record;
  record.iface = editor_.editIface;
  record.id = static_cast<std::int16_t>(editor_.editId);
  record.msn = editor_.editMsn;
  record.service = editor_.editService;
  record.stuCapable = editor_.editStu;
  record.echoCancel = editor_.editEcho;
  record.telPort = static_cast<std::int16_t>(editor_.editTelPort);
  record.handset = static_cast<std::int16_t>(editor_.editHandset);
  record.priority = editor_.editPriority;
  record.accessCodes = editor_.editAccess;
  record.chargeTone = editor_.editCharge;
  record.hexIdentity = "FFFFFFFF";
  record.name = "EDITED";
  record.auxValue = 0;
  record.auxIndex = 0;
  record.distressBox = false;
  config_.WriteRecord(record);
  ReloadDevices();
  SelectDevice(record.id);
  ShowReadBack(CompareChange({record}, config_.configLines));
}

void frmDev::HsExit() {
  if (!editor_.editOk || !MakeBackupOnce()) return;
  pointer = Pointer::Hourglass;
  std::vector<DeviceRecord> sent;
  const auto write = [&](bool changed, const std::string& tag, std::string_view status) {
    if (!changed) return;
    ShowStatus(status);
    DeviceRecord record;
    ParseTagRecord(tag, kTagSeparator, record);
    config_.WriteRecord(record);
    sent.push_back(std::move(record));
  };
  write(editor_.firstChanged, editor_.firstRecordTag, "Updating MSN1");
  write(editor_.secondChanged, editor_.secondRecordTag, "Updating MSN2");
  if (!sent.empty()) {
    ShowStatus("Reading configuration back");
    ReloadDevices();
    ShowReadBack(CompareChange(sent, config_.configLines));
  }
  pointer = Pointer::Normal;
  ShowStatus("");
}

DeviceRecord frmDev::SerialRecord() const {
  DeviceRecord record;
  ParseTagRecord(lblPortDesc[static_cast<std::size_t>(comSetup_.portIndex)].tag, kTagSeparator, record);
  record.iface = comSetup_.iface;
  record.id = static_cast<std::int16_t>(comSetup_.newId);
  record.msn = comSetup_.msn;
  return record;
}

void frmDev::ComSetup_Exit() {
  if (!comSetup_.changed || !MakeBackupOnce()) return;
  pointer = Pointer::Hourglass;
  ShowStatus("Writing configuration");
  const DeviceRecord record = SerialRecord();
  if (comSetup_.newId != comSetup_.oldId) config_.RemoveDevice(static_cast<std::int16_t>(comSetup_.oldId));
  PauseThrough(loop(), 1);
  config_.WriteRecord(record);
  ReloadDevices();
  SelectDevice(record.id);
  ShowReadBack(CompareChange({record}, config_.configLines));
}

void frmDev::ComSetup_Delete() {
  if (!MakeBackupOnce()) return;
  pointer = Pointer::Hourglass;
  ShowStatus("Writing configuration");
  const auto id = static_cast<std::int16_t>(comSetup_.oldId);
  config_.RemoveDevice(id);
  PauseThrough(loop(), 1);
  ReloadDevices();
  SelectDevice(comSetup_.newId);
  ShowReadBack(CompareRemoval(id, config_.configLines));
}

void frmDev::Remove() {
  DeviceRecord record;
  if (!RecordOfTag(TagOf(treedev), record)) {
    p_.platform.dialogs.MessageBox("This category indication cannot be deleted");
    return;
  }
  if (!VerifyOwner()) return;
  const Answer answer = p_.platform.dialogs.Ask({.text = "Remove Terminal Id: " + HexId(record.id) + "? ",
                                                 .title = std::string(kTitle),
                                                 .buttons = Buttons::OkCancel,
                                                 .owner = this});
  if (answer != Answer::Ok || !MakeBackupOnce()) return;
  const int parent = treedev.tree().Parent(treedev.selected);
  ShowStatus("Removing...");
  pointer = Pointer::Hourglass;
  config_.RemoveDevice(record.id);
  ReloadDevices();
  if (treedev.tree().Has(parent)) {
    treedev.selected = parent;
    treedev.SetExpanded(parent, true);
  }
  ShowReadBack(CompareRemoval(record.id, config_.configLines));
}

// ---- The whole configuration: files, factory defaults, summary.

FileQuestion frmDev::ConfigQuestion(std::string_view title) {
  const std::string file = p_.settings.config.doidfile.Get();
  return {.title = std::string(title),
          .filter = "Config Files | *.cfg",
          .start = file.empty() ? p_.settings.config.doidpath.Get() : file,
          .owner = this};
}

void frmDev::StorePath(const std::string& path) {
  if (path != p_.settings.config.doidfile.Get()) p_.settings.config.doidfile.Set(path);
}

void frmDev::Save() {
  state_ = DeviceManagerState::Saving;
  const auto path = p_.platform.dialogs.SaveFile(ConfigQuestion("Save Configuration to file"));
  bool saved = false;
  if (path) {
    StorePath(*path);
    // The file is replaced only after the whole configuration has been read.
    saved = config_.ReadConfig() && WriteConfigFile(p_.settings.files(), *path, config_.configLines);
  }
  if (!saved) {
    // Intentional: after a failure or Cancel a file can be loaded only after the next refresh.
    p_.platform.dialogs.MessageBox("Cannot save this item");
    return;
  }
  state_ = DeviceManagerState::Ready;
}

void frmDev::Load() {
  if (state_ != DeviceManagerState::Ready || !VerifyOwner()) return;
  state_ = DeviceManagerState::Loading;
  const auto path = p_.platform.dialogs.OpenFile(ConfigQuestion("Load Configuration from file"));
  if (path) {
    StorePath(*path);
    LoadFile(*path);
  }
  if (state_ == DeviceManagerState::Loading) state_ = DeviceManagerState::Ready;
}

void frmDev::LoadFile(const std::string& path) {
  auto lines = ReadConfigFile(path);
  if (!lines) {
    p_.platform.dialogs.MessageBox("The file cannot be read");
    return;
  }
  const auto& before = config_.LastRead();
  const auto changes = DescribeLoad(before.value_or(std::vector<std::string>{}), *lines, p_.model);
  if (!frmChanges(*this).Ask(path, changes)) return;
  // Intentional: the load goes on after both answers. The window before has asked already.
  p_.platform.dialogs.Ask({.text = "The terminal will automatically restart when complete",
                           .buttons = Buttons::OkCancel,
                           .owner = this});
  if (!MakeBackup()) return;
  pointer = Pointer::Hourglass;
  content_.used.Clear();
  config_.configLines = *lines;
  ShowStatus("Saving on terminal..");
  const bool written = config_.WriteConfigList();
  PauseThrough(loop(), 0.5);
  // Intentional: only texts. Nothing is calculated.
  for (const std::string_view step :
       {"Calculating checksum..", "Verifying to display...", "Finalizing settings..."}) {
    ShowStatus(step);
    PauseThrough(loop(), 0.5);
  }
  ShowStatus("Reading configuration...");
  RebuildTrees();
  if (written) ShowReadBack(CompareReplacement(*lines, config_.configLines));
  ShowStatus("Loaded - restarting terminal");
  Restart();
}

void frmDev::RestoreFactory() {
  if (!VerifyOwner()) return;
  const Answer answer = p_.platform.dialogs.Ask(
      {.text = "This will overwrite the current configuration and restart the terminal",
       .title = std::string(kTitle),
       .buttons = Buttons::OkCancel,
       .warns = true,
       .owner = this});
  if (answer != Answer::Ok || !MakeBackup()) return;
  ShowStatus("Restoring default configuration..");
  pointer = Pointer::Hourglass;
  config_.RestoreFactory();
  PauseThrough(loop(), 3);
  Restart();
}

void frmDev::Restart() {
  config_.RestartTerminal([this](std::string_view text) { ShowStatus(text); });
  Close();
}

void frmDev::PrintSummary() {
  const OutputPage& page = p_.page;
  page.newPrintJob();
  page.printLine("Modem configuration\r\n");
  config_.ReadConfig();
  for (const std::string& line : config_.configLines) {
    DeviceRecord record;
    ParseWireRecord(line, record);
    page.printLine(DescribeRecord(record) + std::string(kCrLf));
  }
  page.printLine("--- complete\r\n");
  page.printJobComplete();
  page.showModal();
}

// ---- Tests of handsets.

/// Reads the record of the selected node of the handset tree. For a handset the record of its first MSN is
/// read, for a missing handset only if `ofMissing` is set.
bool frmDev::HandsetRecord(bool ofMissing, DeviceRecord& record) const {
  const Tree& tree = treeQuil.tree();
  int node = treeQuil.selected;
  if (!tree.Has(node)) return false;
  const std::string& text = tree[node].text;
  if (ofMissing ? IsAHandsetNode(text) : UpperCase(text).starts_with("HANDSET")) node = tree.FirstChild(node);
  return tree.Has(node) && RecordOfTag(tree[node].tag, record);
}

void frmDev::TestHandset() {
  DeviceRecord record;
  if (HandsetRecord(true, record)) {
    config_.TestHandset(record.id);
  } else {
    p_.platform.dialogs.MessageBox("Selection failed");
  }
}

void frmDev::TestBuzzer() {
  DeviceRecord record;
  if (!HandsetRecord(false, record)) return;
  if (record.distressBox) {
    config_.StartBuzzer(record.id);
    p_.platform.dialogs.MessageBox("The distress buzzer should now sound - press OK to end the test");
    config_.StopBuzzer(record.id);
  } else {
    p_.platform.dialogs.MessageBox("This handset is not connected to a distress box.");
    config_.StopBuzzer(0);  // intentional: sent although nothing sounds
  }
}

// ---- Backups and verification.

/// Saves the configuration that was read last. If that fails, the user decides whether to go on.
bool frmDev::MakeBackup() {
  const auto& last = config_.LastRead();
  if (last && backups_.Save(p_.main.applicationTitle, loop().LocalSeconds(), *last)) return true;
  const std::string why = last ? "The backup of the configuration could not be written."
                               : "The configuration has not been read, so there is no backup of it.";
  return p_.platform.dialogs.Ask({.text = why + "\r\nGo on without a backup?",
                                  .title = std::string(kTitle),
                                  .buttons = Buttons::OkCancel,
                                  .warns = true,
                                  .owner = this}) == Answer::Ok;
}

bool frmDev::MakeBackupOnce() {
  if (!backedUp_) backedUp_ = MakeBackup();
  return backedUp_;
}

void frmDev::ShowReadBack(const ReadBack& result) {
  verdict_ = result.Summary();
  ShowProgress();
  if (result.differences.empty()) return;
  p_.page.newPrintJob();
  p_.page.printLine(verdict_ + std::string(kCrLf));
  for (const std::string& line : result.differences) p_.page.printLine(line + std::string(kCrLf));
  p_.page.printJobComplete();
}

}  // namespace corvex
