#include "devices/ConfigDifference.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "base/Text.h"
#include "devices/DeviceTree.h"

namespace corvex {

namespace {

struct Entry {
  DeviceRecord record;
  std::size_t line = 0;  ///< Counted from 1.
  int fields = 0;        ///< Number of fields that the line holds.
};
using Entries = std::vector<Entry>;

Entries Parse(const std::vector<std::string>& lines) {
  Entries entries(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    entries[i].line = i + 1;
    entries[i].fields = ParseWireRecord(lines[i], entries[i].record);
  }
  return entries;
}

/// Makes a text from the terminal or a file fit to be shown.
std::string Shortened(std::string_view line) {
  constexpr std::size_t kMost = 60;
  std::string text(line.substr(0, kMost));
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
  }
  return text + (line.size() > kMost ? "..." : "");
}

std::string ServiceText(ServiceType service) {
  const std::string_view name = ServiceName(service);
  return name.empty() ? std::to_string(static_cast<int>(service)) : std::string(name);
}

std::string InterfaceText(InterfaceType iface) {
  const std::string_view name = InterfaceName(iface);
  return name.empty() ? std::to_string(static_cast<int>(iface)) : std::string(name);
}

std::string Title(const DeviceRecord& record) {
  std::string text =
      "Id " + HexId(record.id) + ": " + ServiceText(record.service) + ", MSN " + Shortened(record.msn);
  switch (record.Kind()) {
    case DeviceKind::AnalogPort:
      return text + ", Tel " + std::to_string(record.telPort + 1);
    case DeviceKind::Handset:
      return text + ", handset " + Shortened(record.name);
    default:
      return text + ", " + InterfaceText(record.iface);
  }
}

/// The fields in which two entries differ, for example "MSN 20 -> 21, echo cancellation 1 -> 0". Empty if the
/// entries are equal.
std::string Differences(const DeviceRecord& a, const DeviceRecord& b) {
  std::string text;
  const auto compare = [&text](std::string_view field, const std::string& before, const std::string& after) {
    if (before == after) return;
    if (!text.empty()) text += ", ";
    text.append(field).append(" ").append(Shortened(before)).append(" -> ").append(Shortened(after));
  };
  const auto flag = [&](std::string_view field, bool before, bool after) {
    compare(field, std::string(FlagText(before)), std::string(FlagText(after)));
  };
  const auto number = [&](std::string_view field, std::int64_t before, std::int64_t after) {
    compare(field, std::to_string(before), std::to_string(after));
  };
  compare("Id", HexId(a.id), HexId(b.id));
  compare("service", ServiceText(a.service), ServiceText(b.service));
  compare("interface", InterfaceText(a.iface), InterfaceText(b.iface));
  compare("MSN", a.msn, b.msn);
  number("field 5", a.auxValue, b.auxValue);
  flag("STU", a.stuCapable, b.stuCapable);
  flag("echo cancellation", a.echoCancel, b.echoCancel);
  number("analog port", a.telPort, b.telPort);
  number("handset", a.handset, b.handset);
  number("field 10", a.auxIndex, b.auxIndex);
  flag("distress box", a.distressBox, b.distressBox);
  flag("priority", a.priority, b.priority);
  flag("access codes", a.accessCodes, b.accessCodes);
  compare("field 14", a.hexIdentity, b.hexIdentity);
  compare("name", a.name, b.name);
  flag("charge tone", a.chargeTone, b.chargeTone);
  return text;
}

struct Match {
  const DeviceRecord* before;  ///< Null: the entry is new.
  const DeviceRecord* after;   ///< Null: the entry is gone.
};

/// Matches the entries of two lists by their Ids, in the order of the second list.
std::vector<Match> MatchById(const Entries& before, const Entries& after) {
  std::map<std::int16_t, std::vector<const DeviceRecord*>> open;  // in reverse order
  for (auto entry = before.rbegin(); entry != before.rend(); ++entry)
    open[entry->record.id].push_back(&entry->record);
  std::vector<Match> matches;
  for (const Entry& entry : after) {
    auto& same = open[entry.record.id];
    matches.push_back({same.empty() ? nullptr : same.back(), &entry.record});
    if (!same.empty()) same.pop_back();
  }
  for (const auto& [id, rest] : open) {
    for (auto record = rest.rbegin(); record != rest.rend(); ++record) matches.push_back({*record, nullptr});
  }
  return matches;
}

/// Reports values that occur in several lines.
template <typename Value>
void ReportTwice(const std::map<Value, std::vector<std::size_t>>& linesOf, std::string_view what,
                 std::vector<std::string>& report) {
  for (const auto& [value, lines] : linesOf) {
    if (lines.size() < 2) continue;
    std::string text(what);
    if constexpr (std::is_same_v<Value, std::string>) {
      text += Shortened(value);
    } else {
      text += HexId(value);
    }
    text += " is used in the lines ";
    constexpr std::size_t kMostLines = 10;
    for (std::size_t i = 0; i < std::min(lines.size(), kMostLines); ++i)
      text += (i > 0 ? ", " : "") + std::to_string(lines[i]);
    report.push_back(text + (lines.size() > kMostLines ? ", ..." : ""));
  }
}

void ReportLines(const std::vector<std::string>& lines, const Entries& entries,
                 std::vector<std::string>& report) {
  for (const Entry& entry : entries) {
    const std::string& line = lines[entry.line - 1];
    const bool controls =
        std::any_of(line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
    const std::string place = "Line " + std::to_string(entry.line);
    if (entry.fields < kWireFields) {
      report.push_back(place + " holds " + std::to_string(entry.fields) + " of " +
                       std::to_string(kWireFields) + " fields: \"" + Shortened(line) + "\" becomes " +
                       Title(entry.record));
    } else if (controls) {
      report.push_back(place + " holds control characters: \"" + Shortened(line) + '"');
    }
  }
}

void ReportHidden(const Entries& entries, TerminalModel model, std::vector<std::string>& report) {
  using Place = DeviceTree::Place;
  DeviceTree tree;
  tree.Reset(model);
  std::size_t waiting = 0;
  for (const Entry& entry : entries) {
    std::string why;
    switch (tree.Add(entry.record)) {
      case Place::Waits:
        ++waiting;
        break;
      case Place::NoId:
        why = "its Id is not above 0";
        break;
      case Place::NoCategory:
        why = "this terminal has no category for its service";
        break;
      case Place::AlreadyThere:
        why = "the same entry occurs before";
        break;
      case Place::DuplicatePort:
      case Place::Replaces:
        why = "its port has an entry before";
        break;
      case Place::NoPort:
        why = "its port does not exist";
        break;
      case Place::Shown:
        break;
    }
    if (!why.empty())
      report.push_back("Line " + std::to_string(entry.line) + " cannot be shown, because " + why + ": " +
                       Title(entry.record));
  }
  if (waiting > 0 && tree.ports.Count() == 0)
    report.push_back("The analog ports cannot be shown, because only " + std::to_string(waiting) +
                     " of 4 have an entry");
}

}  // namespace

std::vector<std::string> DescribeLoad(const std::vector<std::string>& now,
                                      const std::vector<std::string>& next, TerminalModel model) {
  const Entries before = Parse(now);
  const Entries after = Parse(next);
  std::vector<std::string> added;
  std::vector<std::string> removed;
  std::vector<std::string> changed;
  std::size_t same = 0;
  for (const Match& match : MatchById(before, after)) {
    if (match.before == nullptr) {
      added.push_back("Added    " + Title(*match.after));
    } else if (match.after == nullptr) {
      removed.push_back("Removed  " + Title(*match.before));
    } else if (const std::string text = Differences(*match.before, *match.after); !text.empty()) {
      changed.push_back("Changed  Id " + HexId(match.after->id) + ": " + text);
    } else {
      ++same;
    }
  }
  std::vector<std::string> report{std::to_string(added.size()) + " added, " + std::to_string(removed.size()) +
                                  " removed, " + std::to_string(changed.size()) + " changed, " +
                                  std::to_string(same) + " unchanged"};
  for (auto* part : {&added, &removed, &changed})
    report.insert(report.end(), std::make_move_iterator(part->begin()), std::make_move_iterator(part->end()));
  ReportLines(next, after, report);
  std::map<std::int16_t, std::vector<std::size_t>> ids;
  std::map<std::string, std::vector<std::size_t>> msns;
  for (const Entry& entry : after) {
    ids[entry.record.id].push_back(entry.line);
    msns[entry.record.msn].push_back(entry.line);
  }
  ReportTwice(ids, "Id ", report);
  ReportTwice(msns, "MSN ", report);
  ReportHidden(after, model, report);
  constexpr std::size_t kMostLines = 10'000;  // far more than a configuration of a terminal needs
  if (report.size() > kMostLines) {
    const std::string more = "... and " + std::to_string(report.size() - kMostLines) + " more";
    report.resize(kMostLines);
    report.push_back(more);
  }
  return report;
}

std::string ReadBack::Summary() const {
  std::string text;
  if (sent > 0 || removed == 0)
    text = std::to_string(same) + " of " + std::to_string(sent) + " entries read back as sent";
  if (removed > 0) {
    if (!text.empty()) text += ", ";
    text += std::to_string(gone) + " of " + std::to_string(removed) + " removed";
  }
  return text;
}

ReadBack& ReadBack::operator+=(const ReadBack& other) {
  sent += other.sent;
  same += other.same;
  removed += other.removed;
  gone += other.gone;
  differences.insert(differences.end(), other.differences.begin(), other.differences.end());
  return *this;
}

ReadBack CompareReplacement(const std::vector<std::string>& sent, const std::vector<std::string>& read) {
  ReadBack result{.sent = sent.size()};
  const Entries before = Parse(read);
  const Entries after = Parse(sent);
  for (const Match& match : MatchById(before, after)) {
    if (match.before == nullptr) {
      result.differences.push_back("Not read back  " + Title(*match.after));
    } else if (match.after == nullptr) {
      result.differences.push_back("Not sent  " + Title(*match.before));
    } else if (const std::string text = Differences(*match.after, *match.before); !text.empty()) {
      result.differences.push_back("Read differently  Id " + HexId(match.after->id) + ": " + text);
    } else {
      ++result.same;
    }
  }
  return result;
}

ReadBack CompareChange(const std::vector<DeviceRecord>& sent, const std::vector<std::string>& read) {
  const Entries entries = Parse(read);
  ReadBack result{.sent = sent.size()};
  for (const DeviceRecord& record : sent) {
    const auto same = [&](const Entry& entry) { return entry.record == record; };
    const auto sameId = [&](const Entry& entry) { return entry.record.id == record.id; };
    if (std::any_of(entries.begin(), entries.end(), same)) {
      ++result.same;
    } else if (const auto other = std::find_if(entries.begin(), entries.end(), sameId);
               other != entries.end()) {
      result.differences.push_back("Read differently  Id " + HexId(record.id) + ": " +
                                   Differences(record, other->record));
    } else {
      result.differences.push_back("Not read back  " + Title(record));
    }
  }
  return result;
}

ReadBack CompareRemoval(std::int16_t id, const std::vector<std::string>& read) {
  ReadBack result{.removed = 1, .gone = 1};
  for (const Entry& entry : Parse(read)) {
    if (entry.record.id != id) continue;
    result.gone = 0;
    result.differences.push_back("Still there  " + Title(entry.record));
  }
  return result;
}

}  // namespace corvex
