#include "stream/modTML.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/Text.h"
#include "stream/ItemSearch.h"
#include "stream/ParseScreenRecord.h"
#include "stream/SoftKeys.h"

namespace corvex {

namespace {

struct Tag {
  std::string_view word;
  TagToken token;
};

constexpr std::array<Tag, 38> kTags{{
    {"Sk", TagToken::Sk},
    {"Sk1", TagToken::Sk},
    {"Time", TagToken::Time},
    {"none", TagToken::NoCompression},
    {"V42b", TagToken::V42b},
    {"V44", TagToken::V44},
    {"Date", TagToken::Date},
    {"Batt", TagToken::Batt},
    {"Sig", TagToken::Sig},
    {"Mail", TagToken::Mail},
    {"NoMail", TagToken::NoMail},
    {"Sim", TagToken::Sim},
    {"NoSim", TagToken::NoSim},
    {"TextScreen", TagToken::TextScreen},
    {"FieldScreen", TagToken::FieldScreen},
    {"MsgScreen", TagToken::MsgScreen},
    {"ChoiceScreen", TagToken::ChoiceScreen},
    {"StartPrint", TagToken::StartPrint},
    {"Print", TagToken::Print},
    {"EndPrint", TagToken::EndPrint},
    {"CloseChoiceScreen", TagToken::CloseChoiceScreen},
    {"NewMail", TagToken::NewMail},
    {"MenuScreen", TagToken::MenuScreen},
    {"CloseMenuScreen", TagToken::CloseMenuScreen},
    {"TableScreen", TagToken::TableScreen},
    {"Temp", TagToken::Temp},
    {"PsuTemp", TagToken::PsuTemp},
    {"STone", TagToken::STone},
    {"Paint", TagToken::Paint},
    {"Shutdown", TagToken::Shutdown},
    {"Channel", TagToken::Channel},
    {"BookMode", TagToken::BookMode},
    {"GpsPos", TagToken::GpsPos},
    {"gpshead", TagToken::GpsHead},
    {"MUBinfo", TagToken::MubInfo},
    {"DSPinfo", TagToken::DspInfo},
    {"Userinfo", TagToken::UserInfo},
    {"Spotinfo", TagToken::SpotInfo},
}};

/// A perfect hash of the tag words, so that a word is compared with at most one tag.
constexpr std::size_t Slot(std::string_view word) {
  const auto code = [](char c) { return static_cast<std::size_t>(static_cast<unsigned char>(c)); };
  return (word.size() + code(word[0]) + 16 * code(word[1]) + 7 * code(word.back())) % 256;
}

/// Maps each slot to the index of its tag in kTags, or to kTags.size() if the slot has no tag. Compilation
/// fails if two tags share a slot. In that case change the factors in Slot.
constexpr auto kTagOfSlot = [] {
  std::array<std::uint8_t, 256> places{};
  for (auto& place : places) place = kTags.size();
  for (std::size_t i = 0; i < kTags.size(); ++i) {
    auto& place = places[Slot(kTags[i].word)];
    if (place != kTags.size()) throw "two tags share a slot";
    place = static_cast<std::uint8_t>(i);
  }
  return places;
}();

constexpr std::size_t kTagStart = kPacketStart.size();  // position of the tag's "<"
constexpr std::size_t kPrintDiscarded = 3;

/// Maximum size of `printText` in bytes. Further lines of the print job are added to `printLine` only.
constexpr std::size_t kMaxPrintText = 16u << 20;

/// Returns the tag whose ">" is at `end`.
TagToken TokenOf(std::string_view packet, std::size_t end) {
  if (end == std::string_view::npos || packet[kTagStart] != '<') return TagToken::None;
  const std::string_view word = packet.substr(kTagStart + 1, end - kTagStart - 1);
  if (word.size() < 2) return TagToken::None;
  const std::size_t place = kTagOfSlot[Slot(word)];
  return place < kTags.size() && kTags[place].word == word ? kTags[place].token : TagToken::None;
}

/// Returns the text between the tag's ">" at `end` and the end mark of the packet.
std::string_view PayloadAfter(std::string_view packet, std::size_t end) {
  if (end == std::string_view::npos || end + 1 + kPacketEnd.size() > packet.size()) return {};
  packet.remove_suffix(kPacketEnd.size());
  return packet.substr(end + 1);
}

}  // namespace

TagToken TagTokenOf(std::string_view packet) {
  return TokenOf(packet, packet.find('>', kTagStart));
}

std::string_view TagPayload(std::string_view packet) {
  return PayloadAfter(packet, packet.find('>', kTagStart + 1));
}

std::string_view PrintPayload(std::string_view packet) {
  const std::string_view payload = TagPayload(packet);
  return payload.substr(std::min(kPrintDiscarded, payload.size()));
}

TagStream::TagStream(SessionState& state, TextGrid& grid, LongDate longDate)
    : state_(state), grid_(grid), longDate_(std::move(longDate)) {}

void TagStream::HandleTagPacket(std::string_view packet) {
  const std::size_t tagEnd = packet.find('>', kTagStart);
  const TagToken token = TokenOf(packet, tagEnd);
  const std::string_view payload = PayloadAfter(packet, tagEnd);
  Supersede(token);
  switch (token) {
    case TagToken::None:
      break;

    // Status.
    case TagToken::Sig:
      Store(state_.sigText, payload, state_.sigChanged);
      break;
    case TagToken::Time:
      Store(state_.timeText, payload, state_.timeChanged);
      break;
    case TagToken::Date:
      ParseDate(payload);
      break;
    case TagToken::Batt:
      ParseBatt(packet);
      break;
    case TagToken::Temp:
      Store(state_.tempText, payload, state_.tempChanged);
      break;
    case TagToken::PsuTemp:
      Store(state_.psuTempText, payload, state_.psuTempChanged);
      break;
    case TagToken::GpsPos:
      Store(state_.gpsPosText, payload, state_.gpsPosChanged);
      break;
    case TagToken::GpsHead:
      Store(state_.gpsHeadText, payload, state_.gpsHeadChanged);
      break;
    case TagToken::MubInfo:
      Store(state_.mubInfoText, payload, state_.mubChanged);
      break;
    case TagToken::DspInfo:
      Store(state_.dspInfoText, payload, state_.dspChanged);
      break;
    case TagToken::UserInfo:
      Store(state_.userInfoText, payload, state_.userChanged);
      break;
    case TagToken::SpotInfo:
      Store(state_.spotInfoText, payload, state_.spotChanged);
      break;
    case TagToken::STone:
      if (const auto tone = ToInt16(payload)) {
        state_.toneValue = *tone;
        state_.toneChanged = true;
      }
      break;
    case TagToken::Mail:
      state_.mail = true;
      break;
    case TagToken::NewMail:
      state_.newMail = true;
      break;
    case TagToken::NoMail:
      state_.noMail = true;
      break;
    case TagToken::Sim:
      state_.simIn = true;
      break;
    case TagToken::NoSim:
      state_.simOut = true;
      break;
    case TagToken::NoCompression:
    case TagToken::V42b:
    case TagToken::V44:
      if (onCompression) onCompression(token, payload);
      break;

    // Screens and keys.
    case TagToken::Sk:
      ParseKeys(packet);
      break;
    case TagToken::TextScreen:
      BeginPaintedScreen();
      LeaveFor(ScreenKind::TextScreen);
      state_.screenChanged = true;
      break;
    case TagToken::FieldScreen:
      BeginPaintedScreen();
      LeaveFor(ScreenKind::FieldScreen);
      state_.screenChanged = true;
      break;
    case TagToken::TableScreen:
      BeginPaintedScreen();
      state_.screenKind = ScreenKind::TableScreen;
      state_.tableChanged = true;
      // A redraw after a cursor movement within a table does not end MainState::screenHold.
      if (state_.prevScreenKind != ScreenKind::TableScreen) state_.screenChanged = true;
      break;
    case TagToken::MenuScreen:
      LeaveFor(ScreenKind::MenuScreen);
      ParseScreenRecord(packet, state_.menuScreen);
      state_.menuMailText = state_.mailText;
      state_.keysAfterMenu = false;
      state_.menuChanged = true;
      state_.closeChoice = true;
      state_.screenChanged = true;
      break;
    case TagToken::ChoiceScreen:
      // `prevScreenKind` stays: a choice list only covers the screen before it. CloseChoiceScreen returns to
      // `prevScreenKind`.
      state_.screenKind = ScreenKind::ChoiceScreen;
      ParseScreenRecord(packet, state_.choiceScreen);
      state_.choiceChanged = true;
      state_.closeMenu = true;
      break;
    case TagToken::MsgScreen:
      LeaveFor(ScreenKind::MsgScreen);
      Store(state_.msgText, payload, state_.msgChanged);
      state_.closeMenu = true;
      state_.screenChanged = true;
      break;
    case TagToken::CloseMenuScreen:
      state_.closeMenu = true;
      state_.screenKind = state_.prevScreenKind;
      break;
    case TagToken::CloseChoiceScreen:
      state_.closeChoice = true;
      state_.screenKind = state_.prevScreenKind;
      break;
    case TagToken::Paint:
      state_.paintHold = false;
      break;

    // Print jobs.
    case TagToken::StartPrint:
      state_.screenKind = ScreenKind::PrintScreen;
      state_.printText.clear();
      state_.printStart = true;
      break;
    case TagToken::Print:
      AddPrintLine(PrintPayload(packet));
      break;
    case TagToken::EndPrint:
      state_.printEnd = true;
      break;

    // The session and trace.
    case TagToken::Shutdown:
      state_.shutdown = true;
      break;
    case TagToken::BookMode:
      state_.bookMode = true;
      break;
    case TagToken::Channel:
      ParseChannel(payload);
      break;
  }
}

/// Prepares for the packet with this tag. Cancels pending changes that the packet would undo. Pending changes
/// that the packet would overwrite are shown now, by `settle`. After a burst of packets the screen is
/// therefore the same as if each packet had been shown on its own. The dispatcher's fixed order is correct
/// for the changes that remain pending.
void TagStream::Supersede(TagToken token) {
  SessionState& s = state_;
  bool shows = false;  // true if pending changes must be shown before the packet
  switch (token) {
    case TagToken::MenuScreen:
      s.choiceChanged = s.closeMenu = s.tableChanged = false;
      break;
    case TagToken::ChoiceScreen:
      DropMenu();
      shows = s.closeChoice;
      break;
    case TagToken::TextScreen:
    case TagToken::FieldScreen:
    case TagToken::TableScreen:
      DropMenu();
      s.choiceChanged = false;
      shows = s.rowsChanged && !s.paintHold;
      break;
    case TagToken::MsgScreen:
    case TagToken::CloseMenuScreen:
      DropMenu();
      break;
    case TagToken::StartPrint:
      shows = s.printData || s.printEnd;
      break;
    case TagToken::Print:
      shows = s.printEnd;
      break;
    default:
      break;
  }
  if (shows && settle) settle(Earlier::Screen);
}

/// Cancels a menu that has not been shown yet. The soft keys that the menu would have cleared are cleared
/// here.
void TagStream::DropMenu() {
  if (!std::exchange(state_.menuChanged, false) || std::exchange(state_.keysAfterMenu, false)) return;
  state_.softKeyText.fill({});
  state_.softKeysChanged = true;
}

/// Stores the soft keys of a packet. If a menu is pending, clears the keys from before the menu first. A line
/// that is stored without `softKeysChanged` must not appear on the screen; if an earlier line is pending,
/// that line is shown first.
void TagStream::ParseKeys(std::string_view packet) {
  if (state_.menuChanged && !std::exchange(state_.keysAfterMenu, true)) {
    state_.softKeyText.fill({});
    state_.softKeysChanged = true;
  }
  if (!settle || !state_.softKeysChanged) return ParseSoftKeys(packet, state_);
  auto texts = state_.softKeyText;
  auto codes = state_.softKeyCode;
  ParseSoftKeys(packet, state_);
  if (state_.softKeysChanged) return;
  texts.swap(state_.softKeyText);
  codes.swap(state_.softKeyCode);
  state_.softKeysChanged = true;
  settle(Earlier::SoftKeys);
  texts.swap(state_.softKeyText);
  codes.swap(state_.softKeyCode);
}

void TagStream::Store(std::string& text, std::string_view payload, bool& changed) {
  text = payload;
  changed = true;
}

void TagStream::LeaveFor(ScreenKind kind) {
  state_.prevScreenKind = state_.screenKind;
  state_.screenKind = kind;
}

void TagStream::BeginPaintedScreen() {
  grid_.BlankRows();
  state_.paintHold = state_.paintHoldDefault;
  state_.closeChoice = true;
  state_.closeMenu = true;
}

void TagStream::AddPrintLine(std::string_view line) {
  if (!state_.printData) state_.printLine.clear();
  state_.printLine += line;
  state_.printText += line.substr(0, kMaxPrintText - state_.printText.size());
  state_.printData = true;
}

void TagStream::ParseDate(std::string_view payload) {
  Fields fields(payload, '|');
  state_.timeText = fields.Next();
  state_.dateLongText = LongDateOf(fields.Next());
  state_.zoneText = fields.Next();
  state_.timeChanged = true;
}

std::string TagStream::LongDateOf(std::string_view date) const {
  Fields parts(date, '.');
  const auto year = ToInt16(parts.Next());
  const auto month = ToInt16(parts.Next());
  const auto day = ToInt16(parts.Next());
  return year && month && day ? longDate_(*year, *month, *day) : std::string();
}

void TagStream::ParseBatt(std::string_view packet) {
  state_.battChanged = true;
  state_.battLevelText = Fields(TagPayload(packet), '|').Next();
  // The status and the flags are fields of the whole packet. The last field includes the packet's end mark,
  // so the flags are a valid number only if a "|" follows them. Intentional.
  static constexpr std::int16_t kNoFlags = 32;
  Fields fields(packet, '|');
  fields.Next();
  if (fields.More()) state_.battStatusText = fields.Next();
  state_.battFlags = ToInt16(fields.Next()).value_or(kNoFlags);
}

void TagStream::ParseChannel(std::string_view payload) {
  std::int32_t channel = 1;
  std::string_view text = "lost some trace, very very sorry";
  const std::size_t comma = payload.find(',');
  if (comma != std::string_view::npos) {
    if (const auto number = ToInt32(payload.substr(0, comma))) {
      channel = *number;
      text = payload.substr(comma + 1);
    }
  }
  if (channel != 0 && traceToInstance) traceToInstance(channel, text);
}

}  // namespace corvex
