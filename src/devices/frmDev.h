#pragma once

#include <array>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "devices/ConfigDifference.h"
#include "devices/ConfigFile.h"
#include "devices/DeviceTree.h"
#include "devices/SessionOutput.h"
#include "devices/frmChanges.h"
#include "devices/frmComSetup.h"
#include "devices/frmLogin.h"
#include "devices/frmNewISDN.h"
#include "devices/modConf.h"
#include "devices/modSecure.h"
#include "forms/Bars.h"
#include "forms/Controls.h"
#include "forms/TreeView.h"
#include "forms/clsRez.h"
#include "platform/Platform.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"

namespace corvex {

/// The print view, as other windows use it for their own output.
struct OutputPage {
  EventLoop::Task newPrintJob;
  std::function<void(std::string_view)> printLine;
  EventLoop::Task printJobComplete;
  EventLoop::Task showModal;  ///< Returns when the user has closed the view.
};

/// The device manager: shows the terminal's configuration, and is where every change of it begins. Shown
/// modally, in the mode DeviceManager.
///
/// Only one exchange with the terminal runs at a time. A click that would begin another one does nothing. The
/// window can be closed at any time; the exchange in progress is then abandoned.
class frmDev : public Form {
 public:
  struct Parts {
    const Platform& platform;
    SettingsStore& settings;
    const MainState& main;
    const TerminalModel& model;
    TerminalLink& link;
    ReceiveBuffer& received;
    OutputPage page;
  };

  frmDev(Form& owner, Parts parts);
  ~frmDev() override { Withdraw(); }

  /// Shows the window modally and reads the configuration. Returns when the window has been closed.
  void Open();
  /// Sends the bytes that end the session, unless they have been sent. Does not wait.
  void Farewell();

  // What an editor has gathered is written to the terminal. Each reads the configuration again.
  void IsdnExit();
  void HsExit();
  void ComSetup_Exit();
  /// Removes the entry of a serial port. No control uses this.
  void ComSetup_Delete();

  ToolBar Toolbar1{
      *this,
      {.name = "Toolbar1", .rect = {0, 0, kInnerWidth, 480}, .accessible = "Device manager"},
      {{.caption = "New ISDN", .toolTip = "Add ISDN Device", .picture = "add device"},
       {.separator = true},
       {.caption = "Refresh", .toolTip = "Refresh the Device Manager display", .picture = "refresh"},
       {.separator = true},
       {.toolTip = "Back to terminal interface", .picture = "back"}}};

  Frame frmDevices{*this, {.name = "frmDevices", .rect = {90, 570, 4980, 5820}, .caption = "ISDN Devices"}};
  TreeView treedev{frmDevices,
                   {.name = "treedev", .rect = {90, 270, 4800, 5460}, .accessible = "ISDN Devices"}};
  Frame frmQuil{*this, {.name = "frmQuil", .rect = {5160, 570, 5070, 2070}, .caption = "Dedicated Handsets"}};
  TreeView treeQuil{frmQuil,
                    {.name = "treeQuil", .rect = {90, 270, 4890, 1710}, .accessible = "Dedicated Handsets"}};
  Frame frmPOTS{*this,
                {.name = "frmPOTS", .rect = {5160, 2700, 5070, 1950}, .caption = "Analog Telephony Ports"}};
  TreeView treePOTS{
      frmPOTS, {.name = "treePOTS", .rect = {90, 270, 4890, 1590}, .accessible = "Analog Telephony Ports"}};
  Frame frmPorts{*this, {.name = "frmPorts", .rect = {5160, 4710, 5070, 1680}}};
  std::array<Label, 3> lblPortTitle{{
      {frmPorts, TitleDesign(0, "Rs232 (A)")},
      {frmPorts, TitleDesign(1, "Rs232 (B)")},
      {frmPorts, TitleDesign(2, "USB")},
  }};
  std::array<Label, 3> lblPortDesc{{
      {frmPorts, DescriptionDesign(0)},
      {frmPorts, DescriptionDesign(1)},
      {frmPorts, DescriptionDesign(2)},
  }};
  std::array<Button, 3> cmdPortEdit{{
      {frmPorts, EditDesign(0, "% Rs232 (A)")},
      {frmPorts, EditDesign(1, "% Rs232 (B)")},
      {frmPorts, EditDesign(2, "% USB")},
  }};
  StatusBar StatusBar1{
      *this, {.name = "StatusBar1", .rect = {0, kInnerHeight - 330, kInnerWidth, 330}}, {1, 1}};

  MenuItem mnuDevices{*this, {.name = "mnuDevices", .caption = "Devices"}};
  MenuItem mnuLoad{mnuDevices, {.name = "mnuLoad", .caption = "Load Config from a file"}};
  MenuItem mnuSave{mnuDevices, {.name = "mnuSave", .caption = "Save Config to a file"}};
  MenuItem mnuFactory{mnuDevices, {.name = "mnuFactory", .caption = "Restore Factory &Default"}};
  MenuItem mnuPrint{mnuDevices, {.name = "mnuPrint", .caption = "Print Summary"}};
  // Context menus of the trees.
  MenuItem mnuOptions{*this, {.name = "mnuOptions", .caption = "Options", .visible = false}};
  MenuItem mnuPopAdd{mnuOptions, {.name = "mnuPopAdd", .caption = "Add New"}};
  MenuItem mnuPopRemove{mnuOptions, {.name = "mnuPopRemove", .caption = "Remove", .enabled = false}};
  MenuItem mnuPopEdit{mnuOptions, {.name = "mnuPopEdit", .caption = "Edit ", .enabled = false}};
  MenuItem mnuPopConfigure{mnuOptions, {.name = "mnuPopConfigure", .caption = "Configure", .enabled = false}};
  MenuItem mnuTel{*this, {.name = "mnuTel", .caption = "Tel Options", .visible = false}};
  MenuItem telChange{mnuTel, {.name = "telChange", .caption = "Change Port Settings"}};
  /// Intentional: does nothing.
  MenuItem telRestore{mnuTel, {.name = "telRestore", .caption = "Restore Port Default settings"}};
  MenuItem mnuHs{*this, {.name = "mnuHs", .caption = "Hs Options", .visible = false}};
  MenuItem EditHs{mnuHs, {.name = "EditHs", .caption = "Handset Configuration"}};
  MenuItem HsIdentify{mnuHs, {.name = "HsIdentify", .caption = "Test Handset"}};
  MenuItem tstBuzzer{mnuHs, {.name = "tstBuzzer", .caption = "Test buzzer"}};

  Timer Timer1{*this, {.name = "Timer1", .enabled = false, .interval = 50}};
  /// Reads the configuration again. Intentional: nothing starts it.
  Timer tmrUpdate{*this, {.name = "tmrUpdate", .enabled = false, .interval = 10000}};

 private:
  enum class DeviceManagerState { Start = 0, Ready = 1, FirstRead = 3, Saving = 4, Loading = 5, Closing = 6 };

  static constexpr std::string_view kTitle = "Device Manager";
  static constexpr int kBreath = 256;  ///< Entries between two looks at the window's events.
  static constexpr Twips kInnerWidth = 10320;
  static constexpr Twips kInnerHeight = 6780;
  static constexpr Twips kPortTop = 300;
  static constexpr Twips kPortStep = 450;
  static Design TitleDesign(int port, std::string_view title) {
    return {.name = "lblPortTitle",
            .index = port,
            .rect = {150, kPortTop + port * kPortStep + 60, 990, 300},
            .caption = title};
  }
  static Design DescriptionDesign(int port) {
    return {
        .name = "lblPortDesc", .index = port, .rect = {1170, kPortTop + port * kPortStep + 60, 2640, 300}};
  }
  static Design EditDesign(int port, std::string_view accessible) {
    return {.name = "cmdPortEdit",
            .index = port,
            .rect = {3870, kPortTop + port * kPortStep, 1080, 390},
            .caption = "Edit...",
            .accessible = accessible};
  }

  void ConnectEvents();
  void ConnectTrees();
  /// Returns a handler that runs an exchange with the terminal, unless another one is in progress.
  EventLoop::Task Alone(EventLoop::Task exchange);
  void OfferExchanges(bool offered);
  void LayOut();

  void BeginSession();
  void Close();
  void ShowStatus(std::string_view text) { StatusBar1.SetText(1, text); }
  void ShowProgress();
  void ShowAccessLevel(std::string_view level);
  void RefreshAccessTitle();
  bool VerifyOwner();

  void Refresh();
  bool RebuildTrees();
  void ShowTrees();
  /// Reads the configuration again. Returns whether it has been read completely.
  bool ReloadDevices();
  void ResetContextMenu();
  void OnNodeClick();
  void SelectDevice(std::int32_t id);
  const std::string& TagOf(const TreeView& tree) const;

  void AddOnCategory();
  void Add();
  void Edit(const TreeView& tree);
  /// Reports entries that an editor would change by mistake.
  bool CanEdit(std::initializer_list<std::string_view> tags);
  void EditHandset();
  void EditPort(std::size_t port);
  void Remove();
  DeviceRecord SerialRecord() const;
  void BeginWriting();

  void Save();
  void Load();
  void LoadFile(const std::string& path);
  void RestoreFactory();
  void PrintSummary();
  void Restart();

  bool HandsetRecord(bool ofMissing, DeviceRecord& record) const;
  void TestHandset();
  void TestBuzzer();

  bool MakeBackup();
  bool MakeBackupOnce();
  /// Shows the result of a comparison. `complete`: the configuration has been read completely.
  void ShowReadBack(bool complete, const ReadBack& result);
  FileQuestion ConfigQuestion(std::string_view title);
  void StorePath(const std::string& path);
  bool Waits() const { return pointer == Pointer::Hourglass; }

  const Parts p_;
  SessionOutput output_;
  ConfigDialogue config_;
  OwnerAccess access_;
  ConfigBackups backups_;
  DeviceTree content_;
  clsRez scaler_;
  frmNewISDN editor_;
  frmComSetup comSetup_;
  frmLogin login_;
  DeviceManagerState state_ = DeviceManagerState::Start;
  bool openedAsOwner_ = false;
  bool farewellSent_ = false;
  std::optional<std::int16_t> sounding_;  ///< The handset whose distress buzzer is being tested.
  bool busy_ = false;                     ///< An exchange is in progress.
  bool backedUp_ = false;                 ///< A backup was made in this visit, or the user does without one.
  std::string verdict_;                   ///< The result of the last read or comparison, for the status bar.
};

}  // namespace corvex
