#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "state/SessionState.h"
#include "stream/TextGrid.h"

// The tag stream: the modem's short packets for everything that is not plain screen text.
//
//   <tml> tag payload </tml>
//
// There is one tag in a packet, directly behind the introducer, compared exactly and with case.

namespace corvex {

enum class TagToken : std::int32_t {
  None = 0,
  Sk = 2,
  Time = 3,
  NoCompression = 4,
  V42b = 5,
  V44 = 6,
  Date = 7,
  Batt = 8,
  Sig = 9,
  Mail = 10,
  NoMail = 11,
  Sim = 12,
  NoSim = 13,
  TextScreen = 14,
  FieldScreen = 15,
  MsgScreen = 16,
  ChoiceScreen = 17,
  StartPrint = 18,
  Print = 19,
  EndPrint = 20,
  CloseChoiceScreen = 21,
  NewMail = 22,
  MenuScreen = 24,
  CloseMenuScreen = 25,
  TableScreen = 26,
  Temp = 29,
  PsuTemp = 30,
  STone = 31,
  Paint = 33,
  Shutdown = 34,
  Channel = 35,
  BookMode = 36,
  GpsPos = 37,
  GpsHead = 38,
  MubInfo = 39,
  DspInfo = 40,
  UserInfo = 41,
  SpotInfo = 42,
};

/// The tag of a packet; None for one that is not known or does not end.
TagToken TagTokenOf(std::string_view packet);

/// What stands between the tag and the six characters of the packet's end.
std::string_view TagPayload(std::string_view packet);

/// The payload of a print packet without the three characters that are discarded.
std::string_view PrintPayload(std::string_view packet);

/// Takes packets and stores what they say in the session, with a flag for each change; nothing is painted
/// here, so that a burst of packets paints once. What goes past the flags is called by the functions below.
class TagStream {
 public:
  using LongDate = std::function<std::string(int year, int month, int day)>;

  TagStream(SessionState& state, TextGrid& grid, LongDate longDate);

  /// `packet` runs from the "<" of the introducer through the ">" of "</tml>".
  void HandleTagPacket(std::string_view packet);

  /// Data compression began or ended: NoCompression, V42b or V44, with the text of the packet.
  std::function<void(TagToken, std::string_view)> onCompression;

  /// Of earlier packets: the soft keys; or rows, print jobs and the closing of the choice list.
  enum class Earlier { SoftKeys, Screen };
  /// Shows these at once: the next packet replaces them.
  std::function<void(Earlier)> settle;

  /// A line of trace for a trace channel other than 0.
  std::function<void(std::int32_t channel, std::string_view text)> traceToInstance;

 private:
  void ParseKeys(std::string_view packet);
  void Supersede(TagToken token);
  void DropMenu();
  static void Store(std::string& text, std::string_view payload, bool& changed);
  /// The screen changes, and its end can return to the one before.
  void LeaveFor(ScreenKind kind);
  /// The modem is about to paint a new screen by itself.
  void BeginPaintedScreen();
  void AddPrintLine(std::string_view line);
  void ParseDate(std::string_view payload);
  std::string LongDateOf(std::string_view date) const;
  void ParseBatt(std::string_view packet);
  void ParseChannel(std::string_view payload);

  SessionState& state_;
  TextGrid& grid_;
  LongDate longDate_;
};

}  // namespace corvex
