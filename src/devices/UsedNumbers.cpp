#include "devices/UsedNumbers.h"

#include <algorithm>

namespace corvex {

namespace {

constexpr std::int32_t kLastId = 255;
constexpr std::int32_t kIdsOfService = 15;

std::int32_t FirstIdOf(ServiceType service, TerminalModel model) {
  switch (service) {
    case ServiceType::Speech:
    case ServiceType::None:
      return 1;
    case ServiceType::Speech64:
      return 145;
    case ServiceType::Audio:
      return 97;
    case ServiceType::V110:
      return 113;
    case ServiceType::Udi:
    case ServiceType::Data9k6:
      return 81;
    case ServiceType::Fax:
      return model == TerminalModel::Heron ? 22 : 17;
    case ServiceType::Udi128:
      return 134;
    case ServiceType::V110At128:
      return 136;
    default:
      return 0;
  }
}

struct MsnRange {
  int first;
  int last;
};

MsnRange MsnsOf(ServiceType service, bool analog) {
  if (analog) return {1, 4};
  switch (service) {
    case ServiceType::Speech:
      return {20, 29};
    case ServiceType::Speech64:
      return {30, 39};
    case ServiceType::Audio:
    case ServiceType::Fax:
      return {40, 49};
    case ServiceType::V110:
      return {50, 54};
    case ServiceType::Udi:
      return {60, 64};
    case ServiceType::Data9k6:
      return {60, 69};
    case ServiceType::Udi128:
    case ServiceType::V110At128:
      return {65, 69};
    default:
      return {0, 0};
  }
}

}  // namespace

bool UsedNumbers::IdInUse(std::int32_t id) const {
  return std::find(usedIds.begin(), usedIds.end(), id) != usedIds.end();
}

bool UsedNumbers::MsnInUse(std::string_view msn) const {
  return std::find(usedMsns.begin(), usedMsns.end(), msn) != usedMsns.end();
}

std::int32_t UsedNumbers::NextFreeId(ServiceType service, std::int32_t current, TerminalModel model) const {
  const std::int32_t first = FirstIdOf(service, model);
  if (current >= first && current <= first + kIdsOfService) return current;
  for (std::int32_t id = first; id <= kLastId; ++id) {
    if (id == current || !IdInUse(id)) return id;
  }
  return 0;
}

std::string UsedNumbers::FirstFreeMsn(ServiceType service, bool analog) const {
  const auto candidates = MsnCandidates(service, analog);
  const auto free = std::find_if(candidates.begin(), candidates.end(),
                                 [this](const std::string& msn) { return !MsnInUse(msn); });
  return free == candidates.end() ? std::string() : *free;
}

std::vector<std::string> MsnCandidates(ServiceType service, bool analog) {
  const auto [first, last] = MsnsOf(service, analog);
  std::vector<std::string> candidates;
  for (int msn = first; msn <= last; ++msn) {
    candidates.push_back((msn < 10 ? "0" : "") + std::to_string(msn));
  }
  return candidates;
}

}  // namespace corvex
