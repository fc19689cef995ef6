#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "state/SessionState.h"
#include "stream/TextGrid.h"

// The tag stream: short packets from the modem for everything that is not plain screen text.
//
//   <tml> tag payload </tml>
//
// A packet has one tag, directly after the introducer. Tags are case-sensitive.

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

/// Returns the tag of a packet, or None if the tag is unknown or incomplete.
TagToken TagTokenOf(std::string_view packet);

/// Returns the text between the tag and the six characters "</tml>" at the end of the packet.
std::string_view TagPayload(std::string_view packet);

/// Returns the payload of a print packet without its first three characters, which are discarded.
std::string_view PrintPayload(std::string_view packet);

/// Decodes tag packets. Stores their values in the session state and sets a flag for each change. Nothing is
/// painted here, so that a burst of packets is painted only once. Compression and trace have no flags; the
/// callbacks below report them.
class TagStream {
 public:
  using LongDate = std::function<std::string(int year, int month, int day)>;

  TagStream(SessionState& state, TextGrid& grid, LongDate longDate);

  /// `packet` is one complete packet, from "<tml>" to "</tml>" inclusive.
  void HandleTagPacket(std::string_view packet);

  /// Called when data compression starts or ends, with NoCompression, V42b or V44 and the payload.
  std::function<void(TagToken, std::string_view)> onCompression;

  /// A group of pending changes. `Screen` contains rows, print jobs and the closing of the choice list.
  enum class Earlier { SoftKeys, Screen };
  /// Called when pending changes must be shown before the next packet is decoded.
  std::function<void(Earlier)> settle;

  /// Called with a line of trace for a trace channel other than 0.
  std::function<void(std::int32_t channel, std::string_view text)> traceToInstance;

 private:
  void ParseKeys(std::string_view packet);
  void Supersede(TagToken token);
  void DropMenu();
  static void Store(std::string& text, std::string_view payload, bool& changed);
  /// Changes the screen kind and stores the old kind in `prevScreenKind`, to which a close tag returns.
  void LeaveFor(ScreenKind kind);
  /// Prepares for a new screen that the modem paints with plain text.
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
