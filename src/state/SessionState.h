#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "state/ScreenRecord.h"
#include "state/TerminalModel.h"

namespace corvex {

enum class ScreenKind : std::int32_t {
  NoScreen = 0,
  TextScreen = 1,
  MenuScreen = 2,
  ChoiceScreen = 3,
  MsgScreen = 4,
  FieldScreen = 5,
  PrintScreen = 6,
  TableScreen = 7,
};

/// What has changed since the flags were last handled. The decoders of the modem's stream set the flags; the
/// dispatcher handles and clears them.
struct ChangeFlags {
  bool timeChanged = false;
  bool softKeysChanged = false;
  bool rowsChanged = false;
  bool sigChanged = false;
  bool battChanged = false;  ///< Set, but never handled.
  bool msgChanged = false;
  bool choiceChanged = false;
  bool menuChanged = false;
  bool tableChanged = false;
  bool closeChoice = false;
  bool closeMenu = false;
  bool printStart = false;
  bool printData = false;
  bool printEnd = false;
  bool newMail = false;
  bool mail = false;
  bool noMail = false;
  bool simIn = false;
  bool simOut = false;
  bool tempChanged = false;
  bool psuTempChanged = false;
  bool toneChanged = false;
  bool screenChanged = false;
  bool shutdown = false;
  bool bookMode = false;
  bool gpsPosChanged = false;
  bool gpsHeadChanged = false;
  bool mubChanged = false;
  bool dspChanged = false;
  bool userChanged = false;
  bool spotChanged = false;
  friend bool operator==(const ChangeFlags&, const ChangeFlags&) = default;
};

/// What the modem has reported, as plain values. Received bytes change it, and the window is painted from it.
struct SessionState : ChangeFlags {
  static constexpr int kRows = 10;     ///< Rows of the modem's screen. Rows 2 to 8 are shown.
  static constexpr int kColumns = 40;  ///< Column 1 is never shown and never written.
  static constexpr int kFirstShownRow = 2;
  static constexpr int kShownRows = 7;
  static constexpr int kSoftKeys = 4;

  // The last values received.
  std::string sigText;
  std::string gpsPosText;
  std::string gpsHeadText;
  std::string mubInfoText;
  std::string dspInfoText;
  std::string userInfoText;
  std::string spotInfoText;
  std::string timeText;
  std::string dateLongText;
  std::string zoneText;
  std::string tempText;
  std::string psuTempText;
  std::int16_t toneValue = 0;
  std::string battLevelText;  // The battery fields are stored, but never shown.
  std::string battStatusText;
  std::int16_t battFlags = 0;
  std::string msgText;
  std::string printText;  ///< All lines of the current print job.
  std::string printLine;  ///< Lines of print jobs that the dispatcher has not handled yet.

  // Screen.
  ScreenKind screenKind = ScreenKind::NoScreen;
  ScreenKind prevScreenKind = ScreenKind::NoScreen;
  bool paintHold = false;        ///< The modem is drawing a new screen, which is not shown yet.
  bool paintHoldDefault = true;  ///< Value that `paintHold` gets when a new screen begins.
  ScreenRecord menuScreen;
  ScreenRecord choiceScreen;
  std::array<std::string, kRows> screenRows;  ///< Row 1 is element 0. A row's first character is column 1.
  std::array<bool, kRows> rowClean{};         ///< False if the row must be painted.
  std::uint8_t cursorCol = 1;
  std::uint8_t cursorRow = 1;
  std::array<std::string, kSoftKeys> softKeyText;
  std::array<std::int16_t, kSoftKeys> softKeyCode{};
  std::string mailText = "Mail";
  std::string menuMailText;  ///< Value of `mailText` when the menu arrived.
  /// Soft keys have arrived after a menu that is still to be shown. The keys from before that menu are
  /// already cleared.
  bool keysAfterMenu = false;

  TerminalModel terminalModel = TerminalModel::Unknown;
  bool traceEnabled = false;    ///< The master trace window is open.
  bool suTraceEnabled = false;  ///< The second trace stream is on.

  friend bool operator==(const SessionState&, const SessionState&) = default;
};

}  // namespace corvex
