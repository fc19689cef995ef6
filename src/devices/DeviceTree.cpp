#include "devices/DeviceTree.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <utility>

#include "base/Text.h"

namespace corvex {

namespace {

struct Category {
  ServiceType service;
  std::string_view key;
  int image;  ///< Picture of a device in this category.
};

constexpr std::array<Category, 8> kCategories{{
    {ServiceType::Speech, "ISDNSPEECH", 4},
    {ServiceType::Speech64, "ISDNSPEECH64", 5},
    {ServiceType::Audio, "ISDNAUDIO", 16},
    {ServiceType::V110, "ISDNV110", 7},
    {ServiceType::Udi, "ISDNUDI", 7},
    {ServiceType::Fax, "ISDNFAX", 21},
    {ServiceType::Udi128, "FUDI128", 24},
    {ServiceType::V110At128, "FV110128", 24},
}};
constexpr int kRootImage = 17;
constexpr int kHandsetImage = 4;
constexpr int kMissingImage = 9;

const Category* CategoryOf(ServiceType service) {
  const auto* found = std::find_if(kCategories.begin(), kCategories.end(),
                                   [service](const Category& c) { return c.service == service; });
  return found == kCategories.end() ? nullptr : &*found;
}

/// The categories after the first one, in their order.
std::initializer_list<ServiceType> FurtherServices(TerminalModel model) {
  using S = ServiceType;
  static constexpr auto kHeron = {S::Fax, S::Speech64, S::Audio, S::Udi, S::V110, S::Udi128, S::V110At128};
  static constexpr auto kWren = {S::Fax, S::Speech64, S::Audio, S::Udi, S::V110};
  static constexpr auto kLark = {S::Fax};
  static constexpr auto kOthers = {S::Speech64, S::Audio, S::Udi, S::V110};
  switch (model) {
    case TerminalModel::Heron:
      return kHeron;
    case TerminalModel::Wren:
      return kWren;
    case TerminalModel::Lark:
    case TerminalModel::LarkB:
      return kLark;
    default:
      return kOthers;
  }
}

std::string IdAndMsn(std::string_view before, const DeviceRecord& record, std::string_view between) {
  return std::string(before) + HexId(record.id) + std::string(between) + record.msn;
}

}  // namespace

bool IsAHandsetNode(std::string_view text) {
  const std::string upper = UpperCase(text);
  return upper.starts_with("HANDSET ") || upper.starts_with("MISSING");
}

bool TagIsExact(std::string_view tag) {
  return std::count(tag.begin(), tag.end(), kTagSeparator) == kWireFields - 1;
}

ServiceType ServiceOfCategory(std::string_view key) {
  const std::string upper = UpperCase(key);
  return Contains(upper, "SPEECH64") ? ServiceType::Speech64 : ServiceOfKey(key);
}

ServiceType ServiceOfKey(std::string_view key) {
  const std::string upper = UpperCase(key);
  const auto has = [&upper](std::string_view word) { return Contains(upper, word); };
  if (has("SPEECH") && has("64")) return ServiceType::Speech64;
  if (has("UDI128")) return ServiceType::Udi128;
  if (has("110128")) return ServiceType::V110At128;
  if (has("SPEECH")) return ServiceType::Speech;
  if (has("AUDIO")) return ServiceType::Audio;
  if (has("UDI")) return ServiceType::Udi;
  if (has("V110")) return ServiceType::V110;
  if (has("ISDNFAX")) return ServiceType::Fax;
  return ServiceType::None;
}

void DeviceTree::Reset(TerminalModel model) {
  devices = {};
  ports = {};
  handsets = {};
  handsetNodes_.clear();
  // The tags of the serial ports stay until their entries are read again.
  for (SerialText& text : serial) text.caption.clear();
  used.Clear();
  portTable = {};
  for (PortRecord& port : portTable) port.id = 0;
  portCount = 0;
  devices.Add(Tree::kNone, {.key = "ISDN", .text = "ISDN DEVICE", .image = kRootImage, .expanded = true});
  AddCategory(ServiceType::Speech);
  for (const ServiceType service : FurtherServices(model)) AddCategory(service);
}

void DeviceTree::AddCategory(ServiceType service) {
  const Category& category = *CategoryOf(service);
  devices.Add(
      devices.First(),
      {.key = std::string(category.key), .text = std::string(ServiceName(service)), .image = category.image});
}

DeviceTree::Place DeviceTree::Add(const DeviceRecord& record) {
  if (record.id <= 0) return Place::NoId;
  switch (record.Kind()) {
    case DeviceKind::AnalogPort:
      return AddPort(record);
    case DeviceKind::Handset:
      return AddHandset(record);
    case DeviceKind::SerialPort:
      return AddSerial(record);
    case DeviceKind::Isdn:
      return AddIsdn(record);
  }
  return Place::NoId;
}

DeviceTree::Place DeviceTree::AddIsdn(const DeviceRecord& record) {
  used.Note(record);  // even if the entry is not shown
  const Category* const category = CategoryOf(record.service);
  const int parent = category == nullptr ? Tree::kNone : devices.Find(category->key);
  if (parent == Tree::kNone) return Place::NoCategory;
  const std::string tag = FormatTagRecord(record, kTagSeparator);
  if (devices.Find(tag) != Tree::kNone) return Place::AlreadyThere;
  devices[parent].expanded = true;
  devices.Add(parent, {.key = tag,
                       .text = IdAndMsn("Terminal Id: ", record, ".  MSN: "),
                       .tag = tag,
                       .image = category->image,
                       .bold = true});
  return Place::Shown;
}

DeviceTree::Place DeviceTree::AddSerial(const DeviceRecord& record) {
  const std::size_t port = record.iface == InterfaceType::Rs232A   ? 0U
                           : record.iface == InterfaceType::Rs232B ? 1U
                                                                   : 2U;
  const bool again = !serial[port].caption.empty();
  serial[port] = {"  Id= " + ShortHex(record.id) + "h  MSN= " + record.msn,
                  FormatTagRecord(record, kTagSeparator)};
  used.Note(record);
  return again ? Place::Replaces : Place::Shown;
}

DeviceTree::Place DeviceTree::AddPort(const DeviceRecord& record) {
  const auto slot = static_cast<std::size_t>(record.telPort);
  if (slot >= portTable.size()) return Place::NoPort;
  if (portTable[slot].id != 0) return Place::DuplicatePort;
  portTable[slot] = record;
  const bool all =
      std::all_of(portTable.begin(), portTable.end(), [](const PortRecord& port) { return port.id != 0; });
  if (!all) return Place::Waits;
  ShowPorts();
  return Place::Shown;
}

void DeviceTree::ShowPorts() {
  int image = 0;
  for (const PortRecord& port : portTable) {
    // Intentional: a port with any other service gets the picture of the port before it.
    if (port.service == ServiceType::Speech || port.service == ServiceType::Speech64 ||
        port.service == ServiceType::Audio || port.service == ServiceType::Fax) {
      image = CategoryOf(port.service)->image;
    }
    const std::string tag = FormatTagRecord(port, kTagSeparator);
    const std::string tel = "Tel " + std::to_string(port.telPort + 1) + " Id: ";
    ports.Add(Tree::kNone,
              {.key = tag, .text = IdAndMsn(tel, port, ". MSN: "), .tag = tag, .image = image, .bold = true});
    used.Note(port);
    ++portCount;
  }
}

DeviceTree::Place DeviceTree::AddHandset(const DeviceRecord& record) {
  used.Note(record);
  std::vector<int>& parents = handsetNodes_[record.handset];
  // No terminal has more. Searching them all would take quadratic time.
  const auto searched = std::min<std::ptrdiff_t>(std::ssize(parents), 256);
  const auto end = parents.begin() + searched;
  const auto same = std::find_if(parents.begin(), end, [&](int node) {
    return Contains(handsets[node].text, record.name);  // intentional: a part of the text is enough
  });
  const bool missing = record.handset == DeviceRecord::kMissing;
  const std::string tag = FormatTagRecord(record, kTagSeparator);
  const std::string key = tag + ",DISTRESS";  // intentional: with and without a distress box
  if (handsets.Find(key) != Tree::kNone) return Place::AlreadyThere;
  int parent = same == end ? Tree::kNone : *same;
  if (parent == Tree::kNone) {
    const std::string text =
        (missing ? "Missing " : "HANDSET ") + record.name + (record.distressBox ? " DISTRESS" : "");
    parent = handsets.Add(
        Tree::kNone,
        {.key = text, .text = text, .image = missing ? kMissingImage : kHandsetImage, .expanded = true});
    parents.push_back(parent);
  }
  const std::string text = std::string(ServiceName(record.service)) + IdAndMsn(" ID:", record, " MSN:");
  handsets.Add(parent, {.key = key, .text = text, .tag = tag});
  return Place::Shown;
}

}  // namespace corvex
