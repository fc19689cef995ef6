#include "session/frmTerm.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "session/MenuMarks.h"
#include "settings/SettingFonts.h"
#include "window/PopUp.h"

namespace corvex {

frmTerm::frmTerm(const Platform& platform, SettingsStore& settings)
    : TermControls(platform.loop, platform.windows),
      dialogs_(platform.loop, platform.dialogs),
      passageDialogs_(platform.loop, dialogs_),
      printers_(platform.loop, platform.printers),
      platform_(With(dialogs_, printers_, platform)),
      settings_(settings),
      received_(platform.loop),
      grid_(state_),
      tags_(state_, grid_, platform.longDate),
      scanner_(received_, state_, tags_, grid_),
      link_(platform_, settings, received_, main_),
      probe_(platform.loop, state_, main_, link_, received_, settings),
      lists_(*this, main_, state_),
      status_(*this, main_, state_, settings, platform.sound),
      silence_(*this, main_),
      dispatcher_({.platform = platform_,
                   .settings = settings,
                   .window = *this,
                   .main = main_,
                   .state = state_,
                   .received = received_,
                   .grid = grid_,
                   .scanner = scanner_,
                   .lists = lists_,
                   .status = status_}),
      layout_(*this),
      trace_({.platform = platform_,
              .settings = settings,
              .window = *this,
              .layout = layout_,
              .main = main_,
              .state = state_,
              .link = link_}),
      portPanel_(platform_, settings, *this),
      passages_(platform.loop, main_, link_),
      reset_({.settings = settings,
              .window = *this,
              .layout = layout_,
              .status = status_,
              .silence = silence_,
              .trace = trace_,
              .main = main_,
              .state = state_,
              .grid = grid_}),
      panels_({.settings = settings,
               .window = *this,
               .layout = layout_,
               .portPanel = portPanel_,
               .main = main_,
               .received = received_,
               .link = link_,
               .passages = passages_,
               .reset = reset_}),
      modes_({.platform = platform_,
              .comPort = platform_.comPort,
              .sock = platform_.sock,
              .dialogs = passageDialogs_,
              .settings = settings,
              .window = *this,
              .layout = layout_,
              .silence = silence_,
              .trace = trace_,
              .main = main_,
              .state = state_,
              .received = received_,
              .link = link_,
              .probe = probe_,
              .passages = passages_,
              .reset = reset_,
              .panels = panels_,
              .page = {.newPrintJob = [this] { printView_.NewPrintJob(); },
                       .printLine = [this](std::string_view text) { printView_.PrintLine(text); },
                       .printJobComplete = [this] { printView_.PrintJobComplete(); },
                       .showModal = [this] { printView_.ShowPrintForm(); }}}),
      keys_({.platform = platform_,
             .window = *this,
             .main = main_,
             .state = state_,
             .received = received_,
             .grid = grid_,
             .link = link_}),
      panelLink_(link_, main_),
      test_(platform_, *this, panelLink_),
      rawCommands_(platform_, main_, *this, panelLink_),
      dsp_(platform_, *this, panelLink_),
      printView_(*this, platform_, settings),
      testLog_({.settings = settings,
                .window = *this,
                .main = main_,
                .state = state_,
                .link = link_,
                .keys = keys_,
                .page = printView_}) {
  txtRx.multiLine = true;
  txtRx.locked = true;
  for (TextBox* shown : {&txtPort, &txtSpeed, &txtData, &txtStopBits}) shown->locked = true;
  tabConnect.BringToFront();  // at the smallest zoom it overlaps the panels slightly
  cmdCls.BringToFront();
  ConnectEvents();
}

/// Returns the platform with `dialogs` and `printers` in place of its own.
Platform frmTerm::With(Dialogs& dialogs, Printers& printers, const Platform& p) {
  return {.loop = p.loop,
          .windows = p.windows,
          .comPort = p.comPort,
          .serialPorts = p.serialPorts,
          .sock = p.sock,
          .dialogs = dialogs,
          .printers = printers,
          .sound = p.sound,
          .shell = p.shell,
          .longDate = p.longDate,
          .dspMsg = p.dspMsg};
}

frmTerm::~frmTerm() {
  Withdraw();
}

void frmTerm::Load() {
  received_.ClearRx();
  SetSoundMenu();
  SetMenus();
  RestorePosition();
  platform_.windows.SetApplicationTitle("");
  caption = main_.applicationTitle;  // empty until the modem has been detected
  settings_.printer.path.Get();      // the first call stores the default path
  LoadPortSettings(platform_.comPort, settings_);
  portPanel_.Refresh();
  frmMenu.visible = false;
  state_.mailText = "Mail";
  main_.mode = ModemMode::AwaitIntro;
  ClearPopUp(*this);
  Rect outer = rect;
  outer.width = kWidth;
  rect = outer;
  layout_.SetFramePositions();
  frmAux.visible = false;
  layout_.ShowCompactWindow();
  ShowLogo();
  SetRowFont();
  MarkRoute(*this, settings_);
  CorvexFocus1.SetFocus();
  grid_.ResetScreenModel();
  main_.rowsFrozen = false;
  std::error_code ignored;
  std::filesystem::current_path(settings_.AppFolder(), ignored);
  state_.paintHoldDefault = true;
  state_.terminalModel = TerminalModel::Unknown;
  // The window is visible from here on. If the user chooses a mode, the waits below are abandoned.
  visible = true;
  try {
    link_.CloseLink();
  } catch (const WaitAbandoned& wait) {
    if (!wait.overdue) throw;  // continue if it was only a pause over midnight
  }
  // Only an active window connects at the start, and the window system may take a moment to activate it.
  const auto limit = loop().Now() + kActivationTime;
  for (EventLoop::Wait wait(loop()); !Active() && loop().Now() < limit;) wait.Pump(limit);
  tmrStart.enabled = !Chosen();
}

void frmTerm::SetMenus() {
  const auto& config = settings_.config;
  mnuDspTest.visible = config.testmode.Get();
  const std::string phone = config.phone.Get();
  if (phone != "R2" && phone != "R1") return;  // the settings below apply to these two families only
  mnuTest.visible = config.testmode.Get();
  mnuMapping.visible = config.configmode.Get();
  cmdTop[1].visible = config.configmode.Get();
  mnuTrace.visible = config.trace.Get();
  mnuSUTrace.visible = config.trace.Get();
  mnuAT.visible = config.atmode.Get();
}

/// Intentional: only `Refused` hides the menu entry, and only `NoPassword` shows it again.
void frmTerm::OfferUpgrade(UpgradeOffer offer) {
  mnuUpgrade.enabled = offer == UpgradeOffer::Allowed;
  if (offer == UpgradeOffer::NoPassword) mnuUpgrade.visible = true;
  if (offer == UpgradeOffer::Refused) mnuUpgrade.visible = false;
}

void frmTerm::SetSoundMenu() {
  const bool beep = settings_.config.sound.IsBeep();
  mnuSndBeep.checked = beep;
  mnuSndOff.checked = !beep;
}

void frmTerm::RestorePosition() {
  if (windowState == WindowState::Minimized) return;
  MoveTo(settings_.positions.termleft.Get(), settings_.positions.termtop.Get());
}

void frmTerm::SavePosition() {
  const Rect outer = rect;
  if (std::abs(static_cast<long long>(outer.left)) >= windows().ScreenWidth()) return;
  settings_.positions.termleft.Set(outer.left);
  settings_.positions.termtop.Set(outer.top);
}

void frmTerm::ShowLogo() {
  if (settings_.config.brand.Get() == "Quil") return;
  Picture1.visible = false;
  imgLogo.picture = "file:" + settings_.InAppFolder(settings_.config.logo.Get());
  imgLogo.visible = true;
}

void frmTerm::SetRowFont() {
  const Font rowFont = SettingFont(settings_.screen);
  for (std::size_t row = 0; row < TermControls::kSignal; ++row) corvexLbl[row].font = rowFont;
}

void frmTerm::OnActivate() {
  const bool show = settings_.config.showgps.Get();
  lblGps[0].visible = show;
  mnuGPS.checked = show;
  logCheck.enabled = true;
  keys_.RestoreFocus();  // lists that came while the window was inactive have not been focused
}

void frmTerm::OnResize() {
  if (windowState == WindowState::Minimized) {
    reset_.StopTimers();
    return;
  }
  const Pointer before = pointer;  // a probe may show the hourglass already
  pointer = Pointer::Hourglass;
  layout_.FollowSize();
  pointer = before;
}

void frmTerm::ToggleGps() {
  const bool show = !lblGps[0].visible;
  settings_.config.showgps.Set(show);
  lblGps[0].visible = show;
  mnuGPS.checked = false;  // intentional: unchecked either way until the window is activated again
}

void frmTerm::Close() {
  if (std::exchange(closing_, true)) return;
  testLog_.Finish();
  // The session continues while the user answers, which can take any time.
  if (!printView_.ClosePrintForm()) {
    closing_ = false;
    return;
  }
  main_.mode = ModemMode::Closing;
  // Limits the time of the steps below. End also ends every wait, even an endless one further down the stack.
  loop().After(kClosingTime, [this] {
    SavePosition();
    loop().End();
  });
  modes_.LeaveWindows();
  link_.SendCancel();
  Pause(loop(), 0.2);
  link_.SendCancel();
  SavePosition();
  Pause(loop(), 0.2);
  reset_.StopTimers();
  link_.CloseLink();
  Pause(loop(), 0.2);
  trace_.CloseMaster();
  layout_.EndScaling();
  loop().End();
}

}  // namespace corvex
