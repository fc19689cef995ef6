#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Platform.h"
#include "session/ScreenLists.h"
#include "session/StatusPanel.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"
#include "state/SessionState.h"
#include "stream/StreamScanner.h"
#include "stream/TextGrid.h"
#include "stream/modTML.h"
#include "window/TermControls.h"

namespace corvex {

/// Handles received bytes. Depending on the main window's mode they are dropped, shown as text, or scanned.
/// After a scan, everything whose flag is set in the session state is shown, in one fixed order.
///
/// ProcessReceived may be called again while it waits. Each flag is cleared before its action, so that a
/// change is shown once.
class Dispatcher {
 public:
  struct Parts {
    const Platform& platform;
    const SettingsStore& settings;
    TermControls& window;
    MainState& main;
    SessionState& state;
    ReceiveBuffer& received;
    TextGrid& grid;
    StreamScanner& scanner;
    ScreenLists& lists;
    StatusPanel& status;
  };

  explicit Dispatcher(const Parts& parts) : p_(parts) {}

  void ProcessReceived();

  /// Shows a group of pending changes before the next packet is decoded. See TagStream::settle.
  void Settle(TagStream::Earlier what);

  /// To be called when a periodic log has been taken. Shows the message about the printer that was put off
  /// during the log, if any.
  void LogEnded();

  /// Appends text to the text view, which keeps only the last part.
  void AppendToRx(std::string_view text);

  // Actions outside the main window. An action that is not set does nothing.
  std::function<void()> newPrintJob;
  std::function<void(const std::string& lines)> printLine;
  std::function<void()> printJobComplete;
  std::function<void(const std::string& numbers)> dspInfo;
  std::function<void()> shutdown;  ///< Called when the terminal is switching off.
  std::function<void()> heard;     ///< Called when the modem has sent something in its session.

 private:
  void ShowBytes();
  void ServeFlags();
  void ServeMenu();
  bool PrintsApart();
  void ServePrint();
  void PrintToPrinter();
  void TellOfPrinter(std::string_view text);
  void ShowPrinterBox(std::string_view text, int own);

  Parts p_;
  std::optional<bool> printsApart_;
  bool telling_ = false;       ///< A message box about the printer is open or about to open.
  std::string_view afterLog_;  ///< The message about the printer to show after the log.
};

}  // namespace corvex
