#include "unit/ConfigShell.h"

#include <algorithm>
#include <utility>

#include "unit/Words.h"

namespace corvex::simulation {
namespace {

constexpr const char* kRefused = "<ddUF>";
constexpr const char* kLocked = "<dd>";
constexpr std::size_t kHandset = 8;  // fields of an entry
constexpr std::size_t kDistressBox = 10;

// A long list is sent in pieces, so that it does not overflow the queue of a port.
constexpr std::size_t kPiece = std::size_t{16} * 1024;
constexpr EventLoop::Time kBetweenPieces = std::chrono::milliseconds(2);

std::string Done(bool done) {
  return done ? "<dduo>" : kRefused;
}

std::optional<int> OneNumber(std::string_view rest) {
  const auto words = Words(rest);
  return words.size() == 1 ? ParseNumber(words[0]) : std::nullopt;
}

/// Parses the fields of an update. Returns an empty list if their number is wrong.
DeviceDatabase::Fields UpdateFields(std::string_view rest, std::size_t words) {
  const auto parsed = Words(rest);
  if (parsed.size() != words) return {};
  return {parsed.begin(), parsed.end()};
}

DeviceDatabase::Fields DeviceFields(std::string_view rest) {
  // Two more fields follow, which the database does not keep.
  auto fields = UpdateFields(rest, DeviceDatabase::kFields + 2);
  if (!fields.empty()) fields.resize(DeviceDatabase::kFields);
  return fields;
}

DeviceDatabase::Fields PortFields(std::string_view rest) {
  // The name and the last flag come as one word; the name may be empty.
  auto fields = UpdateFields(rest, DeviceDatabase::kFields - 1);
  if (fields.empty()) return fields;
  const char flag = fields.back().back();
  if (flag < '0' || flag > '9') return {};
  fields.back().pop_back();
  fields.emplace_back(1, flag);
  return fields;
}

bool IsUpdate(std::string_view command) {
  return command == "updd" || command == "upta" || command == "uphs";
}

const CommandFault* Find(const std::vector<CommandFault>& faults, std::string_view command, int use) {
  const auto found = std::find_if(faults.begin(), faults.end(), [&](const CommandFault& fault) {
    return fault.command == command && (fault.use == 0 || fault.use == use);
  });
  return found == faults.end() ? nullptr : &*found;
}

}  // namespace

ConfigShell::ConfigShell(EventLoop& loop, ConfigOptions options, bool lark, Send send)
    : loop_(loop),
      options_(std::move(options)),
      send_(std::move(send)),
      devices_(options_.entries, lark),
      timer_(loop),
      owner_(options_.owner) {}

const std::map<std::string, ConfigShell::Handler, std::less<>>& ConfigShell::Commands() {
  using Rest = std::string_view;
  static const std::map<std::string, Handler, std::less<>> kCommands{
      {kStart,
       [](ConfigShell& shell, Rest) {
         shell.running_ = true;
         return std::string("<CONFIG ACTIVE>");
       }},
      {"quit",
       [](ConfigShell& shell, Rest) {
         shell.Leave();
         return std::string("\r\nOK\r\n");
       }},
      {"gfd", [](ConfigShell&, Rest) { return std::string("<dd>"); }},
      {"gadd", [](ConfigShell& shell, Rest) { return shell.List(); }},
      {"ladd",
       [](ConfigShell& shell, Rest) {
         if (shell.owner_) shell.devices_.LockAll();
         return Done(shell.owner_);
       }},
      {"cadd", [](ConfigShell& shell, Rest) { return Done(shell.owner_ && shell.devices_.Clear()); }},
      {"padd",
       [](ConfigShell& shell, Rest) { return Done(shell.owner_ && shell.devices_.RestoreDefaults()); }},
      {"badd", [](ConfigShell& shell, Rest) { return Done(shell.owner_ && shell.devices_.Commit()); }},
      {"lckd",
       [](ConfigShell& shell, Rest rest) {
         const auto id = OneNumber(rest);
         if (!shell.owner_ || !id) return std::string(kRefused);
         shell.devices_.Lock(*id);
         return std::string(kLocked);
       }},
      {"rmdd",
       [](ConfigShell& shell, Rest rest) {
         const auto id = OneNumber(rest);
         return Done(shell.owner_ && id && shell.devices_.Remove(*id));
       }},
      {"updd",
       [](ConfigShell& shell, Rest rest) {
         const auto fields = DeviceFields(rest);
         return Done(shell.owner_ && !fields.empty() && shell.devices_.UpdateDevice(fields));
       }},
      {"upta",
       [](ConfigShell& shell, Rest rest) {
         const auto fields = PortFields(rest);
         return Done(shell.owner_ && !fields.empty() && shell.devices_.UpdatePort(fields));
       }},
      {"uphs",
       [](ConfigShell& shell, Rest rest) {
         const auto fields = UpdateFields(rest, DeviceDatabase::kFields);
         return Done(shell.owner_ && !fields.empty() && shell.devices_.UpdateHandset(fields));
       }},
      {"gtlevel", [](ConfigShell& shell, Rest) { return std::string(shell.owner_ ? "OWNER" : "USER"); }},
      {"trypwd",
       [](ConfigShell& shell, Rest rest) {
         if (rest != shell.options_.password) return std::string("PWDBAD");
         shell.owner_ = true;
         return std::string("PWDOK");
       }},
      {"usermode",
       [](ConfigShell& shell, Rest) {
         shell.owner_ = false;
         shell.devices_.Unlock();
         return std::string("USER");
       }},
      {"tsths", [](ConfigShell& shell, Rest rest) { return shell.TestHandset(rest); }},
      {"tstDistress", [](ConfigShell& shell, Rest rest) { return shell.TestBuzzer(rest); }},
      {"tstDistOff",
       [](ConfigShell& shell, Rest) {
         shell.buzzing_.reset();
         return std::string("OK");
       }},
  };
  return kCommands;
}

void ConfigShell::Stop() {
  Leave();
  timer_.Stop();
  answers_.clear();
  waiting_ = 0;
}

void ConfigShell::Restart() {
  Stop();
  owner_ = false;
  ringing_.reset();
  buzzing_.reset();
}

void ConfigShell::Leave() {
  running_ = false;
  devices_.Unlock();
  repeated_.clear();
}

void ConfigShell::Execute(const CommandLine::Line& line) {
  const std::string_view text = line.text;
  if (text.find_first_not_of(' ') == std::string_view::npos) {
    if (!repeated_.empty()) Queue(repeated_);
    return;
  }
  const std::size_t end = std::min(text.find(' '), text.size());
  const std::string_view command = text.substr(0, end);
  if (!line.tooLong && Commands().contains(command))
    return Run(command, text.substr(std::min(end + 1, text.size())));
  repeated_.clear();
  Queue(kRefused);
}

void ConfigShell::Run(std::string_view command, std::string_view rest) {
  const auto found = Commands().find(command);
  const int use = ++uses_[found->first];
  const CommandFault* const muted = Find(options_.muted, command, use);
  const bool refused = Find(options_.refused, command, use) != nullptr;
  std::string answer = refused ? kRefused : found->second(*this, rest);
  // An empty line brings back an answer that was lost once, but not one that never comes.
  const bool repeats = IsUpdate(command) && (muted == nullptr || muted->use != 0);
  repeated_ = repeats ? answer : std::string();
  if (muted == nullptr) Queue(std::move(answer));
}

int ConfigShell::Uses(const std::string& command) const {
  const auto found = uses_.find(command);
  return found == uses_.end() ? 0 : found->second;
}

/// The three characters after <SL> are the number of entries; a larger number is 999.
std::string ConfigShell::List() const {
  const auto entries = devices_.Entries();
  const std::string count = std::to_string(std::min<std::size_t>(entries.size(), 999));
  std::string list = "<SL>" + std::string(3 - count.size(), '0') + count;
  for (const std::string& entry : entries) list.append("<dd>").append(entry).append("|");
  return list + "<EOL>";
}

/// The PC does not read the answers of the tests. They must not look like an answer that it waits for.
std::string ConfigShell::TestHandset(std::string_view rest) {
  const auto id = OneNumber(rest);
  const std::string handset = id ? devices_.Field(*id, kHandset) : std::string();
  if (handset.empty() || handset == "255") return "ERROR";
  ringing_ = id;
  return "OK";
}

std::string ConfigShell::TestBuzzer(std::string_view rest) {
  const auto id = OneNumber(rest);
  if (!id || devices_.Field(*id, kDistressBox) != "1") return "ERROR";
  buzzing_ = id;
  return "OK";
}

void ConfigShell::Queue(std::string text) {
  if (waiting_ + text.size() > kLimit) return;
  waiting_ += text.size();
  answers_.push_back({.due = loop_.Now() + options_.delay, .text = std::move(text)});
  SendDue();
}

void ConfigShell::SendDue() {
  while (!answers_.empty() && !timer_.Running()) {
    Answer& next = answers_.front();
    if (next.due > loop_.Now()) return timer_.Start(next.due - loop_.Now(), [this] { SendDue(); });
    const std::string piece = next.text.substr(next.sent, kPiece);
    next.sent += piece.size();
    waiting_ -= piece.size();
    if (next.sent == next.text.size()) {
      answers_.pop_front();
    } else {
      timer_.Start(kBetweenPieces, [this] { SendDue(); });
    }
    send_(piece);
  }
}

}  // namespace corvex::simulation
