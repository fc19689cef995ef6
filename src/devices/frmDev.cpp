#include "devices/frmDev.h"

#include <array>
#include <cstdio>
#include <utility>

#include "base/ScopedFlag.h"
#include "base/Text.h"

namespace corvex {

namespace {

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
      output_(p_.link),
      config_(loop(), output_, p_.received, p_.platform.dialogs),
      access_(loop(), output_, p_.received),
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
  if (sounding_) config_.StopBuzzer(*sounding_);
  if (!openedAsOwner_) config_.LeaveOwnerMode();
  config_.Quit();  // intentional: after a restart too
  output_.End();
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
  verdict_ = ReloadDevices() ? "" : "The configuration could not be read";
  ShowProgress();
  ResetContextMenu();
}

bool frmDev::ReloadDevices() {
  pointer = Pointer::Hourglass;
  ShowStatus("Reading configuration...");
  const bool complete = RebuildTrees();
  ShowStatus("Ready");
  pointer = Pointer::Normal;
  state_ = DeviceManagerState::Ready;
  return complete;
}

/// Returns whether the configuration has been read completely.
bool frmDev::RebuildTrees() {
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

}  // namespace corvex
