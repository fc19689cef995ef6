#include "session/Dispatcher.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "session/RowPainter.h"
#include "session/SoftKeyPanel.h"
#include "session/mListView.h"
#include "settings/SettingFonts.h"
#include "window/PopUp.h"

namespace corvex {

namespace {

/// Clears a flag and returns whether it was set.
bool Taken(bool& flag) {
  const bool was = flag;
  flag = false;
  return was;
}

/// Returns the last 64 KiB of a text. Showing more text of one event would only slow down the window.
std::string_view LastPart(std::string_view text) {
  constexpr std::size_t kWorthShowing = 64 * 1024;
  return text.substr(text.size() - std::min(text.size(), kWorthShowing));
}

}  // namespace

void Dispatcher::ProcessReceived() {
  switch (p_.main.mode) {
    case ModemMode::AwaitIntro:
    case ModemMode::Offline:
    case ModemMode::PortSetup:
      p_.received.DiscardRx();
      break;
    case ModemMode::TestInterface:
      AppendToRx(p_.received.TakeRx());
      break;
    case ModemMode::AtMode:
      ShowBytes();
      break;
    case ModemMode::Terminal:
      if (heard && p_.received.RxAvailable()) heard();
      printsApart_.reset();
      p_.scanner.ScanStream();
      if (!p_.main.leaving) ServeFlags();
      break;
    default:
      break;  // other code reads the buffer
  }
}

void Dispatcher::ShowBytes() {
  const std::string taken = p_.received.TakeRx();
  const std::string_view text = LastPart(taken);
  const bool hex = p_.window.atPanel.OptBase[0].value;
  const bool decimal = p_.window.atPanel.OptBase[1].value;
  if (!hex && !decimal) {
    AppendToRx(text);
    return;
  }
  std::string shown;
  for (const char c : text) {
    const unsigned byte = static_cast<unsigned char>(c);
    if (hex) {
      char digits[8];
      std::snprintf(digits, sizeof digits, "h%X ", byte);
      shown += digits;
    } else {
      shown += 'd' + NumberText(byte) + ' ';
    }
  }
  AppendToRx(shown);
}

void Dispatcher::AppendToRx(std::string_view text) {
  constexpr std::size_t kBound = 5000;
  constexpr std::size_t kDropped = 4096;
  TextBox& view = p_.window.txtRx;
  // One event can add more than kDropped bytes, so several blocks may have to be dropped.
  std::size_t dropped = 0;
  while (view.Text().size() > kBound + dropped) dropped += kDropped;
  view.Edit(0, dropped, {});
  view.Append(LastPart(text));
}

void Dispatcher::ServeMenu() {
  // A new menu has no soft keys until the modem sends some. Soft keys that arrive after the menu are shown,
  // even if they arrive during the pauses of ShowMenu.
  if (!Taken(p_.state.keysAfterMenu)) {
    p_.state.softKeyText.fill({});
    ShowSoftKeys(p_.window, p_.main, p_.state, p_.settings);
  }
  SetListSpacing(p_.window.ListMenu, "75,0", p_.platform.dialogs);
  p_.lists.ShowMenu();
}

void Dispatcher::Settle(TagStream::Earlier what) {
  SessionState& s = p_.state;
  if (p_.main.mode != ModemMode::Terminal || p_.main.leaving) return;
  if (what == TagStream::Earlier::SoftKeys) {
    if (Taken(s.softKeysChanged)) ShowSoftKeys(p_.window, p_.main, s, p_.settings);
    return;
  }
  if (Taken(s.screenChanged)) p_.main.screenHold = false;
  if (!s.paintHold && Taken(s.rowsChanged)) PaintRows(p_.window, p_.main, s, p_.grid);
  if (Taken(s.closeChoice)) {
    s.choiceChanged = false;  // this list arrived before the packet that closes it
    p_.lists.HideChoice();
  }
  if (PrintsApart()) ServePrint();
}

/// Returns whether the print jobs of one event must be handled one by one. If the print view appends jobs,
/// they can be handled as one text. The settings are read only once per event, because one event can contain
/// thousands of jobs.
bool Dispatcher::PrintsApart() {
  const auto& printer = p_.settings.printer;
  if (!printsApart_) printsApart_ = !printer.always.IsFile() || !printer.fileuse.IsAppend();
  return *printsApart_;
}

void Dispatcher::ServeFlags() {
  SessionState& s = p_.state;
  TermControls& window = p_.window;
  // The order is fixed. If a burst sets several flags, the order decides what remains visible.
  if (Taken(s.toneChanged)) p_.status.SoundTone();
  if (Taken(s.screenChanged)) p_.main.screenHold = false;
  if (Taken(s.sigChanged)) p_.status.ShowSignal();
  if (Taken(s.softKeysChanged)) ShowSoftKeys(window, p_.main, s, p_.settings);
  if (!s.paintHold && Taken(s.rowsChanged)) PaintRows(window, p_.main, s, p_.grid);
  if (Taken(s.msgChanged)) ShowPopUp(window, s.msgText);
  if (Taken(s.choiceChanged)) {
    p_.lists.HideMenu();
    p_.lists.ShowChoice();
  }
  if (Taken(s.closeChoice)) p_.lists.HideChoice();
  if (Taken(s.menuChanged)) ServeMenu();
  if (!s.paintHold && Taken(s.tableChanged)) p_.lists.HideMenu();
  ServePrint();
  if (Taken(s.noMail)) p_.status.ShowMail(false);
  if (Taken(s.newMail)) p_.status.ShowMail(true);
  if (Taken(s.mail)) p_.status.ShowMail(true);
  if (Taken(s.timeChanged)) p_.status.ShowTime();
  if (Taken(s.simIn)) p_.status.ShowSim(true);
  if (Taken(s.simOut)) p_.status.ShowSim(false);
  if (Taken(s.gpsHeadChanged)) p_.status.ShowGpsHeading();
  if (Taken(s.gpsPosChanged)) p_.status.ShowGpsPosition();
  if (Taken(s.mubChanged)) p_.status.ShowMubInfo();
  if (Taken(s.dspChanged) && dspInfo) dspInfo(s.dspInfoText);
  if (Taken(s.closeMenu)) p_.lists.HideMenu();
  if (Taken(s.tempChanged)) p_.status.ShowTemperature();
  if (Taken(s.psuTempChanged)) p_.status.ShowPsuTemperature();
  if (Taken(s.userChanged)) p_.status.ShowUserInfo();
  if (Taken(s.spotChanged)) p_.status.ShowSpotBeam();
  if (Taken(s.shutdown) && shutdown) shutdown();
  // Not after the end of the session, which has stopped the timers.
  if (Taken(s.bookMode) && p_.main.mode == ModemMode::Terminal) window.tmrSpawnBook.enabled = true;
}

void Dispatcher::ServePrint() {
  SessionState& s = p_.state;
  const auto& always = p_.settings.printer.always;
  if (Taken(s.printStart) && always.IsFile() && newPrintJob) newPrintJob();
  if (Taken(s.printData) && always.IsFile() && printLine) printLine(s.printLine);
  if (!Taken(s.printEnd)) return;
  if (always.IsPrint()) {
    PrintToPrinter();
  } else if (printJobComplete) {
    printJobComplete();
  }
}

void Dispatcher::PrintToPrinter() {
  const auto& printer = p_.settings.printer;
  if (p_.platform.printers.Count() == 0) {
    TellOfPrinter(kNoPrinter);
    return;
  }
  Font font = SettingFont(printer);
  font.underline = false;  // intentional: the setting is ignored
  if (!p_.platform.printers.PrintText(p_.state.printText, font)) TellOfPrinter(kPrintFailed);
}

/// Shows a message box about the printer. The box has a task of its own that runs when nothing waits, so that
/// the box does not hold up the stream. Only one box is open at a time, since the modem may print a thousand
/// jobs before the user answers. During a periodic log the box is put off until the log has been taken.
void Dispatcher::TellOfPrinter(std::string_view text) {
  if (telling_) return;
  if (p_.main.logTaken) {
    afterLog_ = text;
  } else {
    ShowPrinterBox(text, 0);
  }
}

void Dispatcher::LogEnded() {
  if (!telling_ && !afterLog_.empty()) ShowPrinterBox(std::exchange(afterLog_, {}), 1);
}

void Dispatcher::ShowPrinterBox(std::string_view text, int own) {
  telling_ = true;
  p_.window.loop().PostForQuiet([this, text, own] {
    const ScopedFlag telling(telling_);
    p_.main.ownBoxes = own;
    p_.platform.dialogs.MessageBox(text);
    p_.main.ownBoxes = 0;
  });
}

}  // namespace corvex
