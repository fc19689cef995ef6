#include "unit/DeviceDatabase.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "unit/Words.h"

namespace corvex::simulation {
namespace {

constexpr int kNone = 255;  // of a telephone port, a handset or its MSN
constexpr int kMissingHandset = 254;

enum Service { kSpeech = 0, kSpeech64 = 1, kAudio = 2, kV110 = 3, kUdi = 4, kFax = 6, kLarkData = 7 };
constexpr std::array<int, 8> kIsdnServices{kSpeech, kFax, kSpeech64, kAudio, kUdi, kV110, 8, 9};
constexpr int kLarkServices = 2;  // the number of these that a Lark has
constexpr int kSerialA = 3;
constexpr int kSerialB = 4;
constexpr int kUsb = 2;

std::string Join(const DeviceDatabase::Fields& fields) {
  std::string line;
  for (const std::string& field : fields) line.append(line.empty() ? "" : " ").append(field);
  return line;
}

/// An entry of the generated configuration, with the values that differ between entries.
struct Draft {
  int iface = 0;
  int service = kSpeech;
  int port = kNone;
  int handset = kNone;
  int handsetMsn = kNone;
  std::string name = "unset";
};

/// Every second handset has a distress box; every seventh is missing.
Draft HandsetDraft(int number, int msn, bool lark) {
  return {.service = msn == 0 || lark ? kSpeech : kSpeech64,
          .handset = number % 7 == 0 ? kMissingHandset : 1 + (number - 1) % (kMissingHandset - 1),
          .handsetMsn = msn,
          .name = number == 1 ? "BRIDGE" : "CABIN-" + std::to_string(number)};
}

/// The configuration begins with four telephone ports, a handset, an ISDN telephone and three serial ports.
/// Tens of a handset and eight ISDN devices follow.
Draft DraftOf(int index, bool lark) {
  constexpr std::array<int, 3> kSerial{kSerialA, kSerialB, kUsb};
  if (index < 4) return {.service = index == 2 ? kFax : kSpeech, .port = index};
  if (index < 6) return HandsetDraft(1, index - 4, lark);
  if (index == 6) return {};
  if (index < 10) {
    return {.iface = kSerial[static_cast<std::size_t>(index - 7)], .service = lark ? kLarkData : kUdi};
  }
  const int ten = index / 10;
  const int place = index % 10;
  if (place < 2) return HandsetDraft(ten + 1, place, lark);
  return {.service = kIsdnServices[static_cast<std::size_t>(lark ? place % kLarkServices : place - 2)]};
}

std::string Generated(int index, bool lark) {
  const Draft draft = DraftOf(index, lark);
  const bool box = draft.handset % 2 == 1 && draft.handset != kNone;
  const auto text = [](int number) { return std::to_string(number); };
  // The telephone ports have the MSNs 01 to 04, all others count on from 20.
  const std::string msn = index < 4 ? '0' + text(index + 1) : text(index + 16);
  return Join({text(index + 1), text(draft.iface), text(draft.service), msn, "0", "0",
               draft.service <= kAudio ? "1" : "0", text(draft.port), text(draft.handset),
               text(draft.handsetMsn), box ? "1" : "0", "0", "1", "ffffff", draft.name, "0"});
}

}  // namespace

std::optional<int> ParseNumber(std::string_view word) {
  int number = 0;
  const char* const end = word.data() + word.size();
  const auto [read, failure] = std::from_chars(word.data(), end, number);
  if (failure != std::errc() || read != end) return std::nullopt;
  return number;
}

std::vector<std::string> DeviceDatabase::Entries() const {
  std::vector<std::string> lines;
  lines.reserve(entries_.size());
  for (const auto& [id, line] : entries_) lines.push_back(line);
  return lines;
}

std::string DeviceDatabase::Field(int id, std::size_t field) const {
  const auto found = entries_.find(id);
  return found == entries_.end() ? std::string() : std::string(Words(found->second)[field]);
}

void DeviceDatabase::Unlock() {
  allLocked_ = false;
  locked_.reset();
}

bool DeviceDatabase::Clear() {
  if (allLocked_) entries_.clear();
  return allLocked_;
}

bool DeviceDatabase::RestoreDefaults() {
  if (allLocked_) Generate(kFactoryEntries);
  return allLocked_;
}

bool DeviceDatabase::Commit() {
  return std::exchange(allLocked_, false);
}

bool DeviceDatabase::UpdateDevice(const Fields& fields) {
  const auto id = ParseNumber(fields[0]);
  if (!id || !TakeLock(*id)) return false;
  entries_[*id] = Join(fields);
  return true;
}

bool DeviceDatabase::Remove(int id) {
  return entries_.contains(id) && TakeLock(id) && entries_.erase(id) > 0;
}

void DeviceDatabase::Generate(int entries) {
  entries_.clear();
  for (int index = 0; index < entries; ++index) {
    entries_.emplace_hint(entries_.end(), index + 1, Generated(index, lark_));
  }
}

bool DeviceDatabase::TakeLock(int id) {
  const bool single = locked_ == id;
  if (single) locked_.reset();
  return single || allLocked_;
}

/// `place`: the fields that say where the entry belongs.
bool DeviceDatabase::UpdatePlace(const Fields& fields, std::initializer_list<std::size_t> place) {
  const auto id = ParseNumber(fields[0]);
  if (!id) return false;
  const auto isThere = [&](const auto& entry) {
    const auto old = Words(entry.second);
    return std::all_of(place.begin(), place.end(), [&](std::size_t i) { return old[i] == fields[i]; });
  };
  // Missing handsets share a number, so an entry with this Id in this place comes first.
  auto old = entries_.find(*id);
  const bool stays = old != entries_.end() && isThere(*old);
  const bool somewhere = fields[*place.begin()] != std::to_string(kNone);
  if (!stays && somewhere) {
    old = std::find_if(entries_.begin(), entries_.end(), isThere);
    if (old != entries_.end()) entries_.erase(old);
  }
  entries_[*id] = Join(fields);
  return true;
}

}  // namespace corvex::simulation
