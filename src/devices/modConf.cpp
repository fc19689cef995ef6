#include "devices/modConf.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/Text.h"

namespace corvex {

namespace {

constexpr std::string_view kUpdated = "<dduo>";
constexpr std::string_view kRefused = "UF";
constexpr std::string_view kBegin = "<SL>";
constexpr std::string_view kEnd = "<EOL>";
constexpr std::string_view kEnter = "at+wquilconfig";
constexpr std::string_view kFetch = "gadd";

std::string Line(std::string_view command) {
  return std::string(command) + std::string(kCrLf);
}

/// A command with a number. Intentional: two blanks come before a number that is not negative.
std::string WithNumber(std::string_view command, std::int16_t number) {
  return std::string(command) + ' ' + NumberText(number);
}

/// The fields of an update command up to the name. Intentional: numbers that are not negative have two blanks
/// before them, texts and flags have one.
std::string UpdateFields(std::string_view command, const DeviceRecord& record) {
  std::string line(command);
  const auto number = [&](std::int64_t value) { line += ' ' + NumberText(value); };
  const auto text = [&](std::string_view value) { (line += ' ') += value; };
  number(record.id);
  number(static_cast<std::int32_t>(record.iface));
  number(static_cast<std::int32_t>(record.service));
  text(record.msn);
  number(record.auxValue);
  text(FlagText(record.stuCapable));
  text(FlagText(record.echoCancel));
  number(record.telPort);
  number(record.handset);
  number(record.auxIndex);
  text(FlagText(record.distressBox));
  text(FlagText(record.priority));
  text(FlagText(record.accessCodes));
  text(record.hexIdentity);
  text(record.name);
  return line;
}

}  // namespace

ConfigDialogue::Awaited::Awaited(ConfigDialogue& dialogue, std::string_view reply) : dialogue_(dialogue) {
  dialogue_.progress_.awaited = reply;
  dialogue_.progress_.since = dialogue_.loop_.LocalSeconds();
  dialogue_.progress_.repeats = 0;
}

ConfigDialogue::Awaited::~Awaited() {
  dialogue_.progress_.awaited.clear();
  dialogue_.progress_.repeats = 0;
  dialogue_.Report();
}

void ConfigDialogue::Awaited::Repeat() {
  ++dialogue_.progress_.repeats;
  dialogue_.Report();
}

void ConfigDialogue::Report() const {
  if (onProgress) onProgress();
}

bool ConfigDialogue::AwaitReply(std::string_view pattern, std::string_view resend) {
  constexpr int kPatience = 4;
  const std::string wanted = UpperCase(pattern);
  const std::size_t kept = std::max(wanted.size(), kRefused.size()) - 1;
  std::string heard;
  Awaited awaited(*this, pattern);
  for (int polls = 0;;) {
    PauseThrough(loop_, 0.4);
    LetEventsRun(loop_);
    heard += UpperCase(received_.TakeRx());
    if (Contains(heard, wanted)) return true;
    if (Contains(heard, kRefused)) {
      dialogs_.MessageBox("Update failed");
      output_.Check();
      return false;
    }
    // What has been searched cannot match any more, except with the bytes that follow its end.
    heard.erase(0, heard.size() - std::min(heard.size(), kept));
    if (polls < kPatience) {
      ++polls;
    } else {
      // Intentional: there is no limit. The user ends the wait by closing the window.
      output_.Write(resend);
      awaited.Repeat();
    }
  }
}

bool ConfigDialogue::SendAwait(std::string_view command, std::string_view pattern) {
  output_.WriteLine(command);
  return AwaitReply(pattern, Line(command));
}

/// Intentional: a missing reply is requested by an empty line, not by the command.
bool ConfigDialogue::AwaitUpdated() {
  return AwaitReply(kUpdated, kCrLf);
}

bool ConfigDialogue::EnterConfigMode() {
  output_.WriteLine(kEnter);
  output_.Write(kCrLf);
  return AwaitReply("<CONFIG ACTIVE>", Line(kEnter));
}

bool ConfigDialogue::ProbeConfig() {
  return SendAwait("gfd", "<dd");
}

bool ConfigDialogue::LockConfig() {
  return SendAwait("ladd", kUpdated);
}

bool ConfigDialogue::ClearConfig() {
  return SendAwait("cadd", kUpdated);
}

bool ConfigDialogue::CommitConfig() {
  return SendAwait("badd", kUpdated);
}

bool ConfigDialogue::LockDevice(std::int16_t id) {
  return SendAwait(WithNumber("lckd", id), "<DD>");
}

bool ConfigDialogue::RemoveDevice(std::int16_t id) {
  if (!LockDevice(id)) return false;
  const std::string command = WithNumber("rmdd", id);
  output_.WriteLine(command);
  return AwaitReply("uo", command);  // intentional: repeated without a line end
}

bool ConfigDialogue::WriteRecord(const DeviceRecord& record) {
  switch (record.Kind()) {
    case DeviceKind::AnalogPort:
      SendUpta(record);
      break;
    case DeviceKind::Handset:
      SendUphs(record);
      break;
    default:
      LockDevice(record.id);  // intentional: the entry is sent even if the lock is refused
      SendUpdd(record);
  }
  return AwaitUpdated();
}

/// Intentional: two zeros and a blank end this command, but no other.
void ConfigDialogue::SendUpdd(const DeviceRecord& record) {
  output_.WriteLine(UpdateFields("updd", record) + ' ' + std::string(FlagText(record.chargeTone)) + " 0 0 ");
}

/// Intentional: no blank between the name and the flag.
void ConfigDialogue::SendUpta(const DeviceRecord& record) {
  output_.WriteLine(UpdateFields("upta", record) + std::string(FlagText(record.chargeTone)));
}

void ConfigDialogue::SendUphs(const DeviceRecord& record) {
  output_.WriteLine(UpdateFields("uphs", record) + ' ' + std::string(FlagText(record.chargeTone)));
}

std::string ConfigDialogue::FetchConfigText() {
  constexpr int kAgain = 20;
  constexpr int kSlower = 10;
  constexpr int kLast = 40;
  if (!ProbeConfig()) PauseThrough(loop_, 2);
  output_.WriteLine(kFetch);
  std::string text;
  std::size_t searched = 0;
  Awaited awaited(*this, kEnd);
  for (int polls = 1;; ++polls) {
    PauseThrough(loop_, 0.1);
    const std::string taken = received_.TakeRx();
    text += taken.substr(0, kMostReply - text.size());
    if (polls == kAgain) {
      text.clear();
      searched = 0;
      output_.Write(kCrLf);
      output_.WriteLine(kFetch);
      awaited.Repeat();
    } else if (polls > kSlower) {
      PauseThrough(loop_, 0.2);
    }
    // Only a reply that starts with its mark ends the wait early. Any other reply is used after all polls.
    const bool begins =
        text.size() >= kBegin.size() && FindNoCase(text.substr(0, kBegin.size()), kBegin) == 0;
    if (begins && FindNoCase(text, kEnd, std::max(searched, kBegin.size())) != std::string::npos) return text;
    searched = text.size() - std::min(text.size(), kEnd.size() - 1);
    if (polls > kLast) return text;
  }
}

std::optional<std::vector<std::string>> ParseConfigReply(std::string_view reply) {
  constexpr std::size_t kUnread = 3;  // characters after the first mark
  constexpr std::string_view kEntry = "<dd>";
  const std::size_t begin = FindNoCase(reply, kBegin);
  if (begin == std::string_view::npos) return std::nullopt;
  const std::size_t first = begin + kBegin.size() + kUnread;
  const std::size_t end = FindNoCase(reply, kEnd, first);
  if (end == std::string_view::npos) return std::nullopt;
  std::vector<std::string> lines;
  // The character before the last mark does not belong to the entries.
  const std::size_t length = end > first ? end - first - 1 : 0;
  for (Fields elements(reply.substr(first, length), '|'); elements.More();) {
    const std::string_view element = elements.Next();
    // Intentional: the mark of an entry must be in lower case.
    if (!element.starts_with(kEntry)) continue;
    if (!AddEntry(lines, TrimBlanks(element.substr(kEntry.size())))) return std::nullopt;
  }
  return lines;
}

bool ConfigDialogue::ReadConfig() {
  configLines.clear();
  auto lines = ParseConfigReply(FetchConfigText());
  if (!lines) return false;
  configLines = *lines;
  lastRead_ = std::move(lines);
  return true;
}

void ConfigDialogue::RestoreFactory() {
  if (!LockConfig() || !SendAwait("padd", kUpdated)) return;
  PauseThrough(loop_, 1);
  CommitConfig();
  PauseThrough(loop_, 2);
}

bool ConfigDialogue::WriteConfigList() {
  if (!LockConfig()) {
    dialogs_.MessageBox("Unable to lock config");
    return false;
  }
  if (!ClearConfig()) {
    dialogs_.MessageBox("Unable to clear config");
    return false;
  }
  const std::vector<std::string> lines = configLines;
  progress_.total = static_cast<int>(lines.size());
  /// Ends the count, even if the replacement is abandoned.
  struct Counted {
    ConfigProgress& progress;
    ~Counted() { progress.written = progress.total = 0; }
  };
  {
    const Counted counted{progress_};
    for (const std::string& line : lines) {
      ++progress_.written;
      Report();
      DeviceRecord record;
      ParseWireRecord(line, record);
      SendUpdd(record);  // intentional: for every kind of entry
      AwaitUpdated();    // intentional: goes on with the next entry after a refusal
    }
  }
  Report();
  CommitConfig();
  return true;
}

void ConfigDialogue::RestartTerminal(const std::function<void(std::string_view)>& status) {
  // Intentional: the five seconds last only four.
  constexpr std::array<std::pair<std::string_view, double>, 5> kCountdown{{
      {"Restarting in 5 seconds", 1.0},
      {"Restarting in 4 seconds", 0.9},
      {"Restarting in 3 seconds", 0.8},
      {"Restarting in 2 seconds", 0.7},
      {"Restarting in 1 second", 0.6},
  }};
  Quit();
  for (const auto& [text, seconds] : kCountdown) {
    status(text);
    PauseThrough(loop_, seconds);
  }
  output_.WriteLine("at+wquilreset");
  status("Restarting terminal...");
  PauseThrough(loop_, 2);
}

void ConfigDialogue::TestHandset(std::int16_t id) {
  output_.WriteLine(WithNumber("tsths", id));
}
void ConfigDialogue::StartBuzzer(std::int16_t id) {
  output_.WriteLine(WithNumber("tstDistress", id));
}
void ConfigDialogue::StopBuzzer(std::int16_t id) {
  output_.WriteLine(WithNumber("tstDistOff", id));
}
void ConfigDialogue::LeaveOwnerMode() {
  output_.WriteLine("usermode");
}
void ConfigDialogue::Quit() {
  output_.WriteLine("quit");
}

}  // namespace corvex
