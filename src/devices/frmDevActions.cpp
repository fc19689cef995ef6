// What the user does to the terminal's configuration in the device manager.

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "devices/frmDev.h"

namespace corvex {

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
  if (record.iface == InterfaceType::None || !CanEdit({TagOf(tree)}) || !VerifyOwner()) return;
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

bool frmDev::CanEdit(std::initializer_list<std::string_view> tags) {
  if (std::all_of(tags.begin(), tags.end(), TagIsExact)) return true;
  p_.platform.dialogs.MessageBox("This entry cannot be edited, because its MSN or name contains a comma");
  return false;
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
  if (!CanEdit({tree[first].tag, tree[second].tag})) return;
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
  if (!RecordOfTag(lblPortDesc[port].tag, record) || !CanEdit({lblPortDesc[port].tag})) return;
  comSetup_.Open(record, static_cast<int>(port));
  ComSetup_Exit();
}

void frmDev::BeginWriting() {
  pointer = Pointer::Hourglass;
  verdict_.clear();
  ShowProgress();
}

void frmDev::IsdnExit() {
  if (!editor_.editOk || !MakeBackupOnce()) return;
  BeginWriting();
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
  const bool complete = ReloadDevices();
  SelectDevice(record.id);
  ShowReadBack(complete, CompareChange({record}, config_.configLines));
}

void frmDev::HsExit() {
  if (!editor_.editOk || !MakeBackupOnce()) return;
  BeginWriting();
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
    const bool complete = ReloadDevices();
    ShowReadBack(complete, CompareChange(sent, config_.configLines));
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
  BeginWriting();
  ShowStatus("Writing configuration");
  const DeviceRecord record = SerialRecord();
  const auto oldId = static_cast<std::int16_t>(comSetup_.oldId);
  if (record.id != oldId) config_.RemoveDevice(oldId);
  PauseThrough(loop(), 1);
  config_.WriteRecord(record);
  const bool complete = ReloadDevices();
  SelectDevice(record.id);
  ReadBack result = CompareChange({record}, config_.configLines);
  if (record.id != oldId) result += CompareRemoval(oldId, config_.configLines);
  ShowReadBack(complete, result);
}

void frmDev::ComSetup_Delete() {
  if (!MakeBackupOnce()) return;
  BeginWriting();
  ShowStatus("Writing configuration");
  const auto id = static_cast<std::int16_t>(comSetup_.oldId);
  config_.RemoveDevice(id);
  PauseThrough(loop(), 1);
  const bool complete = ReloadDevices();
  SelectDevice(comSetup_.newId);
  ShowReadBack(complete, CompareRemoval(id, config_.configLines));
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
  BeginWriting();
  ShowStatus("Removing...");
  config_.RemoveDevice(record.id);
  const bool complete = ReloadDevices();
  if (treedev.tree().Has(parent)) {
    treedev.selected = parent;
    treedev.SetExpanded(parent, true);
  }
  ShowReadBack(complete, CompareRemoval(record.id, config_.configLines));
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
  content_.used.Clear();
  config_.configLines = *lines;
  BeginWriting();
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
  const bool complete = RebuildTrees();
  if (written) ShowReadBack(complete, CompareReplacement(*lines, config_.configLines));
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
  BeginWriting();
  ShowStatus("Restoring default configuration..");
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
  int count = 0;
  for (const std::string& line : config_.configLines) {
    DeviceRecord record;
    ParseWireRecord(line, record);
    page.printLine(DescribeRecord(record) + std::string(kCrLf));
    if (++count % kBreath == 0) LetEventsRun(loop());
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
    sounding_ = record.id;  // the buzzer is stopped too if the window closes below the box
    p_.platform.dialogs.MessageBox("The distress buzzer should now sound - press OK to end the test");
    config_.StopBuzzer(record.id);
    sounding_.reset();
  } else {
    p_.platform.dialogs.MessageBox("This handset is not connected to a distress box.");
    config_.StopBuzzer(0);  // intentional: sent although nothing sounds
  }
}

// ---- Backups and verification.

/// Saves the configuration that was read last. If that fails, the user decides whether to go on. Returns
/// false if nothing must be written to the terminal.
bool frmDev::MakeBackup() {
  if (state_ == DeviceManagerState::Closing) return false;  // closed below a box or an editor
  const auto& last = config_.LastRead();
  if (last && backups_.Save(p_.main.applicationTitle, loop().LocalSeconds(), *last)) return true;
  const std::string why = last ? "The backup of the configuration could not be written."
                               : "The configuration has not been read, so there is no backup of it.";
  return p_.platform.dialogs.Ask({.text = why + "\r\nGo on without a backup?",
                                  .title = std::string(kTitle),
                                  .buttons = Buttons::OkCancel,
                                  .warns = true,
                                  .owner = this}) == Answer::Ok &&
         state_ != DeviceManagerState::Closing;
}

bool frmDev::MakeBackupOnce() {
  if (!backedUp_) backedUp_ = MakeBackup();
  return backedUp_ && state_ != DeviceManagerState::Closing;
}

void frmDev::ShowReadBack(bool complete, const ReadBack& result) {
  verdict_ = complete ? result.Summary() : "The configuration could not be read back";
  ShowProgress();
  if (!complete) return;
  if (result.differences.empty()) return;
  p_.page.newPrintJob();
  p_.page.printLine(verdict_ + std::string(kCrLf));
  for (const std::string& line : result.differences) p_.page.printLine(line + std::string(kCrLf));
  p_.page.printJobComplete();
}

}  // namespace corvex
