// Reads two arbitrary configurations from the modem, separated by the first line end. Each entry must survive
// its text forms, the trees must stay well formed, and the differences must add up.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "base/Text.h"
#include "devices/ConfigDifference.h"
#include "devices/ConfigFile.h"
#include "devices/DeviceTree.h"
#include "devices/modConf.h"

using namespace corvex;

namespace {

using Lines = std::vector<std::string>;

void Require(bool holds) {
  if (!holds) std::abort();
}

/// The entries of a reply. Bytes that are no complete reply are taken as the content of one.
Lines EntriesOf(std::string_view bytes) {
  auto lines = ParseConfigReply(bytes);
  if (!lines) lines = ParseConfigReply("<SL>001<dd>" + std::string(bytes) + "|<EOL>");
  return lines.value_or(Lines());  // nullopt: an entry is too long
}

std::vector<DeviceRecord> RecordsOf(const Lines& lines) {
  std::vector<DeviceRecord> records(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const int fields = ParseWireRecord(lines[i], records[i]);
    Require(fields >= 0 && fields <= kWireFields);
  }
  return records;
}

void CheckTag(const DeviceRecord& record) {
  const std::string tag = FormatTagRecord(record, kTagSeparator);
  const bool named = !ServiceName(record.service).empty() && !InterfaceName(record.iface).empty();
  if (!named || !TagIsExact(tag)) return;
  DeviceRecord again;
  Require(ParseTagRecord(tag, kTagSeparator, again) == kWireFields && again == record);
}

/// Returns the number of nodes that show an entry.
std::size_t CheckTree(const Tree& tree) {
  std::size_t entries = 0;
  for (int node = 0; node < tree.Count(); ++node) {
    Require(tree.Parent(node) < node && tree.Find(tree[node].key) <= node);
    DeviceRecord record;
    if (tree[node].tag.empty()) continue;
    Require(RecordOfTag(tree[node].tag, record) && record.id > 0);
    ++entries;
  }
  return entries;
}

void CheckTrees(const std::vector<DeviceRecord>& records, TerminalModel model) {
  DeviceTree content;
  content.Reset(model);
  std::size_t nodes = 0;
  for (const DeviceRecord& record : records) {
    const bool shown = content.Add(record) == DeviceTree::Place::Shown;
    if (shown && record.Kind() == DeviceKind::AnalogPort) nodes += content.portTable.size();
    if (shown && (record.Kind() == DeviceKind::Isdn || record.Kind() == DeviceKind::Handset)) ++nodes;
  }
  Require(CheckTree(content.devices) + CheckTree(content.ports) + CheckTree(content.handsets) == nodes);
}

void CheckDifferences(const Lines& a, const Lines& b, TerminalModel model) {
  const auto number = [](std::size_t count, std::string_view word) {
    return std::to_string(count) + std::string(word);
  };
  Require(DescribeLoad(a, a, model).front() ==
          "0 added, 0 removed, 0 changed, " + number(a.size(), " unchanged"));
  const ReadBack self = CompareReplacement(a, a);
  Require(self.same == a.size() && self.sent == a.size() && self.differences.empty());
  Require(CompareChange(RecordsOf(a), a).differences.empty());

  std::array<unsigned long, 4> there{};
  std::array<unsigned long, 4> back{};
  const auto read = [&](const Lines& from, const Lines& to, std::array<unsigned long, 4>& counts) {
    const std::string summary = DescribeLoad(from, to, model).front();
    std::size_t i = 0;
    for (const std::string_view part : Split(summary, ',')) counts[i++] = std::stoul(std::string(part));
  };
  read(a, b, there);
  read(b, a, back);
  Require(there[0] == back[1] && there[1] == back[0] && there[2] == back[2] && there[3] == back[3]);
  Require(there[0] + there[2] + there[3] == b.size() && there[1] + there[2] + there[3] == a.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t border = std::min(bytes.find('\n'), size);
  const Lines a = EntriesOf(bytes.substr(0, border));
  const Lines b = EntriesOf(bytes.substr(std::min(border + 1, size)));
  const auto model = static_cast<TerminalModel>(size % 8);

  const std::vector<DeviceRecord> records = RecordsOf(b);
  for (const DeviceRecord& record : records) {
    CheckTag(record);
    Require(DescribeRecord(record).ends_with(kCrLf));
  }
  CheckTrees(records, model);
  CheckDifferences(a, b, model);

  const std::string text = ConfigText(b);
  const auto lines = ConfigLines(text);
  Require(lines && lines->size() == b.size() && ConfigText(*lines) == text);
  ConfigLines(bytes);
  return 0;
}
