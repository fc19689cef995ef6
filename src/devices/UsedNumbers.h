#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "devices/DeviceRecord.h"
#include "state/TerminalModel.h"

namespace corvex {

/// The Terminal Ids and MSNs of all entries that the device manager shows. An Id or MSN that is used twice is
/// in the list twice.
struct UsedNumbers {
  std::vector<std::int16_t> usedIds;
  std::vector<std::string> usedMsns;

  void Note(const DeviceRecord& record) {
    usedIds.push_back(record.id);
    usedMsns.push_back(record.msn);
  }
  void Clear() { *this = {}; }
  bool IdInUse(std::int32_t id) const;
  bool MsnInUse(std::string_view msn) const;

  /// Returns a Terminal Id for an entry with this service: `current` if it is in the range of the service,
  /// otherwise the first Id from the start of that range on that is `current` or not in use. Returns 0 if all
  /// Ids up to 255 are in use.
  std::int32_t NextFreeId(ServiceType service, std::int32_t current, TerminalModel model) const;
  /// Returns the first of the MsnCandidates that is not in use, or an empty text.
  std::string FirstFreeMsn(ServiceType service, bool analog) const;
};

/// Returns the MSNs that the program suggests for a service, or for an analog port.
std::vector<std::string> MsnCandidates(ServiceType service, bool analog);

}  // namespace corvex
