// Event handlers of the main window's controls, and callbacks between the parts of the session.

#include "print/frmOptions.h"
#include "session/MenuMarks.h"
#include "session/frmAbout.h"
#include "session/frmTerm.h"
#include "window/PopUp.h"

namespace corvex {

void frmTerm::ConnectEvents() {
  ConnectStream();
  ConnectSession();
  ConnectModeMenu();
  ConnectOtherMenus();
  ConnectPortPanel();
  ConnectTimers();
  ConnectWindow();
  keys_.Connect();
  trace_.Connect();
  test_.Connect();
  rawCommands_.Connect();
  dsp_.Connect();
}

EventLoop::Task frmTerm::UnlessClosing(EventLoop::Task action) {
  return [this, action = std::move(action)] {
    if (main_.mode != ModemMode::Closing) action();
  };
}

void frmTerm::ConnectStream() {
  link_.processReceived = [this] { dispatcher_.ProcessReceived(); };
  scanner_.masterTrace = [this](std::string_view text) { trace_.TraceText(text); };
  tags_.traceToInstance = [this](std::int32_t channel, std::string_view text) {
    trace_.TraceToInstance(channel, text);
  };
  tags_.onCompression = [this](TagToken kind, std::string_view toolTip) {
    status_.ShowCompression(kind, toolTip);
  };
  tags_.settle = [this](TagStream::Earlier what) { dispatcher_.Settle(what); };
  dispatcher_.heard = [this] { silence_.Heard(); };
  dispatcher_.shutdown = [this] { modes_.ShutDown(); };
  dispatcher_.newPrintJob = [this] { printView_.NewPrintJob(); };
  dispatcher_.printLine = [this](const std::string& lines) { printView_.PrintLine(lines); };
  dispatcher_.printJobComplete = [this] { printView_.PrintJobComplete(); };
  dispatcher_.dspInfo = [this](const std::string& numbers) { dsp_.SendDspMessage(numbers); };
}

void frmTerm::ConnectSession() {
  probe_.named = [this] {
    windows().SetApplicationTitle(main_.applicationTitle);
    caption = WindowCaption(main_, state_.mubInfoText);
  };
  probe_.upgrade = [this](UpgradeOffer offer) { OfferUpgrade(offer); };
  panels_.left = [this] { modes_.ReturnFromPanel(); };
  layout_.adjusted = [this] { status_.PlaceTime(); };
  keys_.panelKey = [this](const KeyEvent& key) { return rawCommands_.TakeKey(key); };
  testLog_.ended = [this] { dispatcher_.LogEnded(); };
}

void frmTerm::ConnectModeMenu() {
  cmdTop[0].click = UnlessClosing([this] { modes_.state_await_tml_intro(); });
  cmdTop[1].click = UnlessClosing([this] {
    if (main_.mode != ModemMode::DeviceManager) modes_.OpenDeviceManager();
  });
  mnuTerminal.click = UnlessClosing([this] { modes_.state_await_tml_intro(); });
  mnuTest.click = UnlessClosing([this] { panels_.EnterTestInterface(); });
  mnuAT.click = UnlessClosing([this] { panels_.EnterAtMode(); });
  mnuUpgrade.click = UnlessClosing([this] { modes_.GoUpgrade(); });
  mnuOffline.click = UnlessClosing([this] { modes_.Disconnect(); });
  mnuExit.click = [this] { Close(); };

  // These buttons only leave their mode. Leaving can wait, and a second click during the wait must not enter
  // the mode again.
  testPanel.cmdExitDSP.click = [this] {
    if (main_.mode == ModemMode::TestInterface) panels_.EnterTestInterface();
  };
  atPanel.cmdRawQuit.click = [this] {
    if (main_.mode == ModemMode::AtMode) panels_.EnterAtMode();
  };
}

void frmTerm::ConnectOtherMenus() {
  mnuGPS.click = [this] { ToggleGps(); };
  mnuZoomIn.click = UnlessClosing([this] { layout_.ZoomIn(); });
  mnuZoomOut.click = UnlessClosing([this] { layout_.ZoomOut(); });
  mnuPort.click = UnlessClosing([this] { panels_.EnterPortSetup(); });
  mnuMapping.click = UnlessClosing([this] { modes_.OpenDeviceManager(); });
  mnuR2Print.click = UnlessClosing([this] { frmOptions(*this, platform_, settings_).ShowModal(); });
  mnuSndBeep.click = [this] {
    settings_.config.sound.SetBeep();
    SetSoundMenu();
  };
  mnuSndOff.click = [this] {
    settings_.config.sound.SetOff();
    SetSoundMenu();
  };
  mnuMasterONMaster.click = UnlessClosing([this] { modes_.SelectMub(0); });
  mnuSlaveONMaster.click = UnlessClosing([this] { modes_.SelectMub(1); });
  mnuMasterONSlave.click = UnlessClosing([this] { modes_.SelectMub(2); });
  mnuSlaveONSlave.click = UnlessClosing([this] { modes_.SelectMub(3); });
  mnuManual.click = [this] { platform_.dialogs.MessageBox("Insert the user CD for your terminal"); };
  mnuAbout.click = UnlessClosing([this] { frmAbout(*this, settings_).ShowModal(); });
}

void frmTerm::ConnectPortPanel() {
  tabConnect.click = [this] {
    frmSerial.visible = tabConnect.selected == 1;
    frmLan.visible = tabConnect.selected == 2;
  };
  UpDownPort.change = UnlessClosing([this] { portPanel_.StepPort(); });
  UpDownSpeed.change = UnlessClosing([this] { portPanel_.StepSpeed(); });
  UpDownData.change = UnlessClosing([this] { portPanel_.StepDataBits(); });
  UpDownStopBits.change = UnlessClosing([this] { portPanel_.StepStopBits(); });
  cmdSaveSettings.click = UnlessClosing([this] {
    SavePortSettings(platform_.comPort, settings_);
    panels_.EnterPortSetup();
  });
  chkEnableLAN.click = [this] { txtLanIP.enabled = chkEnableLAN.value; };
  chkEnableERB.click = UnlessClosing([this] {
    portPanel_.StoreErb();
    MarkRoute(*this, settings_);
    if (chkEnableERB.value) mnuTelnet.visible = true;
  });
  Command1.click = UnlessClosing([this] {
    portPanel_.StoreRoute();
    link_.ForgetLogin();  // the login belongs to the previous route
    MarkRoute(*this, settings_);
    panels_.EnterPortSetup();
  });
}

void frmTerm::ConnectTimers() {
  tmrStart.tick = [this] {
    tmrStart.enabled = false;
    if (main_.mode != ModemMode::Closing && Active() && !Chosen()) modes_.ConnectProbe();
  };
  tmrWatchdog.tick = UnlessClosing([this] { modes_.Watchdog(); });
  tmrMsg.tick = [this] {
    tmrMsg.enabled = false;
    if (main_.mode != ModemMode::Closing) ClearPopUp(*this);
  };
  tmrResize.tick = [this] {
    tmrResize.enabled = false;
    if (main_.mode != ModemMode::Closing) layout_.Settle();
  };
  tmrSpawnBook.tick = UnlessClosing([this] { modes_.OpenPhoneBook(); });
  logCheck.tick = [this] { testLog_.Check(); };
}

void frmTerm::ConnectWindow() {
  cmdCls.click = [this] {
    txtRx.SetText({});
    keys_.RestoreFocus();
  };
  activate = [this] { OnActivate(); };
  deactivate = [this] { SavePosition(); };
  resize = [this] { OnResize(); };
  queryUnload = [this] { Close(); };
}

}  // namespace corvex
