#include "host/Arguments.h"

#include <charconv>
#include <chrono>
#include <climits>
#include <functional>
#include <map>
#include <utility>

namespace corvex::simulation::host {

namespace {

template <typename Number>
bool ReadNumber(const std::string& word, Number least, Number most, Number& number) {
  Number read{};
  const auto [end, failure] = std::from_chars(word.data(), word.data() + word.size(), read);
  if (failure != std::errc() || end != word.data() + word.size() || !(read >= least && read <= most))
    return false;
  number = read;
  return true;
}

bool ReadUpgrade(const std::string& word, UpgradeAnswer& answer) {
  static const std::map<std::string, UpgradeAnswer> kAnswers{
      {"protocol", UpgradeAnswer::Protocol},
      {"disallowed", UpgradeAnswer::Disallowed},
      {"pwdisallowed", UpgradeAnswer::PasswordDisallowed},
      {"error", UpgradeAnswer::Error}};
  const auto found = kAnswers.find(word);
  if (found == kAnswers.end()) return false;
  answer = found->second;
  return true;
}

/// A text of printable ASCII, which can be sent over the line.
bool ReadText(const std::string& word, std::string& text) {
  for (const char c : word) {
    if (c < ' ' || c > '~') return false;
  }
  text = word;
  return true;
}

bool ReadName(const std::string& word, std::string& name) {
  name = word;
  return !word.empty();
}

bool ReadTime(const std::string& word, EventLoop::Time& time) {
  double seconds = 0;
  if (!ReadNumber<double>(word, 0, 3600, seconds)) return false;
  time = std::chrono::duration_cast<EventLoop::Time>(std::chrono::duration<double>(seconds));
  return true;
}

/// Reads a command of the configuration mode and, after a colon, the number of the use; "updd" or "updd:17".
bool ReadCommandFault(const std::string& word, std::vector<CommandFault>& faults) {
  const std::size_t colon = word.find(':');
  CommandFault fault{.command = word.substr(0, colon)};
  if (!ConfigShell::Knows(fault.command)) return false;
  if (colon != std::string::npos && !ReadNumber<int>(word.substr(colon + 1), 1, INT_MAX, fault.use))
    return false;
  faults.push_back(std::move(fault));
  return true;
}

/// Reads the number of a data block and, after a colon, how often it fails; "12" or "12:3".
bool ReadBlockFault(const std::string& word, std::vector<BlockFault>& faults) {
  const std::size_t colon = word.find(':');
  BlockFault fault;
  if (!ReadNumber<int>(word.substr(0, colon), 0, INT_MAX, fault.block)) return false;
  if (colon != std::string::npos && !ReadNumber<int>(word.substr(colon + 1), 1, INT_MAX, fault.times))
    return false;
  faults.push_back(fault);
  return true;
}

bool ReadSegment(const std::string& word, std::vector<int>& segments) {
  int number = 0;
  if (!ReadNumber<int>(word, 1, 255, number)) return false;
  segments.push_back(number);
  return true;
}

/// Reads a version such as "4.01".
bool ReadVersion(const std::string& word, int& version) {
  const std::size_t point = word.find('.');
  int whole = 0;
  int part = 0;
  if (point == std::string::npos || word.size() != point + 3) return false;
  if (!ReadNumber<int>(word.substr(0, point), 0, 9999, whole)) return false;
  if (!ReadNumber<int>(word.substr(point + 1), 0, 99, part)) return false;
  version = whole * 100 + part;
  return true;
}

/// Reads a number into an optional.
template <typename Number>
bool ReadOptional(const std::string& word, Number least, Number most, std::optional<Number>& number) {
  Number read{};
  if (!ReadNumber<Number>(word, least, most, read)) return false;
  number = read;
  return true;
}

/// Reads a command line word by word.
class Parser {
 public:
  Arguments Parse(const std::vector<std::string>& words, std::string& error) {
    for (auto word = words.begin(); word != words.end() && error.empty(); ++word) {
      erbDescribed_ |= word->starts_with("--erb-");
      if (const auto found = switches_.find(*word); found != switches_.end()) {
        *found->second = true;
      } else if (const auto option = values_.find(*word); option == values_.end()) {
        error = "unknown option " + *word;
      } else if (std::next(word) == words.end()) {
        error = *word + " needs a value";
      } else if (!option->second(*++word)) {
        error = option->first + ": invalid value " + *word;
      }
    }
    if (error.empty() && !read_.help) error = Contradiction();
    if (error.empty()) Complete();
    return std::move(read_);
  }

 private:
  using Reader = std::function<bool(const std::string&)>;

  /// What is wrong with the options as a whole; empty if nothing is.
  std::string Contradiction() const {
    if (!read_.imageFile.empty()) {
      return read_.pty || read_.tcpPort ? "--make-image cannot be combined with --tcp or --pty" : "";
    }
    if (read_.pty == read_.tcpPort.has_value()) return "give either --tcp or --pty";
    if (read_.anyAddress && read_.pty) return "--any requires --tcp";
    if (!read_.link.empty() && !read_.pty) return "--link requires --pty";
    if (erbDescribed_ && !erbWanted_) return "the options of the ERB unit require --erb";
    if (erbWanted_ && !read_.playFile.empty()) return "--play cannot be combined with --erb";
    return {};
  }

  void Complete() {
    read_.unit.seed = read_.faults.seed;
    if (!erbWanted_) return;
    erb_.serial = read_.pty;
    erb_.unit = read_.unit;
    read_.erb = std::move(erb_);
  }

  bool ReadMub(const std::string& word, MubState state) {
    std::size_t number = 0;
    if (!ReadNumber<std::size_t>(word, 0, ErbOptions::kMubs - 1, number)) return false;
    erb_.mubs[number] = state;
    return true;
  }

  template <typename Number>
  Reader NumberReader(Number least, Number most, Number& number) {
    return [least, most, &number](const std::string& word) {
      return ReadNumber<Number>(word, least, most, number);
    };
  }
  template <typename Number>
  Reader NumberReader(Number least, Number most, std::optional<Number>& number) {
    return [least, most, &number](const std::string& word) {
      return ReadOptional<Number>(word, least, most, number);
    };
  }
  template <typename Target>
  Reader With(bool (*read)(const std::string&, Target&), Target& target) {
    return [read, &target](const std::string& word) { return read(word, target); };
  }

  Arguments read_;
  ErbOptions erb_;
  bool erbWanted_ = false;
  bool erbDescribed_ = false;  ///< An option of the ERB unit was given.

  const std::map<std::string, bool*> switches_{
      {"--help", &read_.help},
      {"--any", &read_.anyAddress},
      {"--pty", &read_.pty},
      {"--tour", &read_.unit.tour},
      {"--cut", &read_.faults.cut},
      {"--silent", &read_.faults.silent},
      {"--erb", &erbWanted_},
      {"--erb-lingers", &erb_.lingers},
      {"--owner", &read_.unit.config.owner},
      {"--refuse-catalog", &read_.unit.loader.refusesCatalog},
      {"--refuse-erase", &read_.unit.loader.refusesErase},
  };
  const std::map<std::string, Reader> values_{
      {"--tcp", NumberReader<std::uint16_t>(0, 65535, read_.tcpPort)},
      {"--link", With(ReadName, read_.link)},
      {"--model", With(ReadText, read_.unit.modelReply)},
      {"--upgrade", With(ReadUpgrade, read_.unit.upgrade)},
      {"--entries", NumberReader<int>(0, 100'000, read_.unit.config.entries)},
      {"--owner-password", With(ReadText, read_.unit.config.password)},
      {"--uf", With(ReadCommandFault, read_.unit.config.refused)},
      {"--mute", With(ReadCommandFault, read_.unit.config.muted)},
      {"--config-delay", With(ReadTime, read_.unit.config.delay)},
      {"--restart", With(ReadTime, read_.unit.restartTime)},
      {"--make-image", With(ReadName, read_.imageFile)},
      {"--image-segments", NumberReader<int>(0, 255, read_.image.segments)},
      {"--image-bytes", NumberReader<std::uint32_t>(0, 100'000'000, read_.image.bytes)},
      {"--image-block", NumberReader<int>(1, 32767, read_.image.blockSize)},
      {"--image-version", With(ReadVersion, read_.image.version)},
      {"--refuse-block", With(ReadBlockFault, read_.unit.loader.refused)},
      {"--refuse-header", With(ReadBlockFault, read_.unit.loader.refusedHeader)},
      {"--wrong-echo", With(ReadBlockFault, read_.unit.loader.wrongEchoes)},
      {"--bad-segment", With(ReadSegment, read_.unit.loader.badSegments)},
      {"--wrong-check-echo", NumberReader<int>(1, 255, read_.unit.loader.wrongCheckEcho)},
      {"--silent-at", NumberReader<int>(0, INT_MAX, read_.unit.loader.silentAt)},
      {"--erase", With(ReadTime, read_.unit.loader.eraseTime)},
      {"--speed", NumberReader<int>(50, 10'000'000, read_.speed)},
      {"--play", With(ReadName, read_.playFile)},
      {"--seed", NumberReader<std::uint32_t>(0, 1'000'000'000, read_.faults.seed)},
      {"--garble", NumberReader<double>(0, 1, read_.faults.garble)},
      {"--drop", NumberReader<double>(0, 1, read_.faults.drop)},
      {"--late", With(ReadTime, read_.faults.late)},
      {"--hangup", NumberReader<std::uint64_t>(1, UINT64_MAX, read_.faults.hangUpAfter)},
      {"--erb-user", [this](const std::string& word) { return !word.empty() && ReadText(word, erb_.user); }},
      {"--erb-password", With(ReadText, erb_.password)},
      {"--erb-in-use", [this](const std::string& word) { return ReadMub(word, MubState::InUse); }},
      {"--erb-broken", [this](const std::string& word) { return ReadMub(word, MubState::Broken); }},
      {"--erb-delay", With(ReadTime, erb_.answerTime)},
  };
};

}  // namespace

const char* const kUsage =
    "corvex-simulator: a simulated terminal unit on a TCP port or a pseudo terminal\n"
    "\n"
    "  --tcp PORT        listen on a TCP port of this machine; 0 takes a free one\n"
    "  --any             with --tcp: on all addresses, not only 127.0.0.1\n"
    "  --pty             make a pseudo terminal, which opens like a serial port\n"
    "  --link PATH       with --pty: a symbolic link to it\n"
    "\n"
    "  --model TEXT      the reply to at+gmm (204417)\n"
    "  --upgrade WORD    the reply about software upgrades: protocol, disallowed,\n"
    "                    pwdisallowed or error (protocol)\n"
    "  --tour            show some screens in turn until a key is pressed\n"
    "  --speed BAUD      send no faster than a serial line of this speed\n"
    "  --play FILE       play a recorded session instead of the simulated unit\n"
    "\n"
    "  --entries N       entries of the terminal configuration, 0 to 100000 (8)\n"
    "  --owner-password P  the password of the owner level (owner)\n"
    "  --owner           start at the owner level\n"
    "  --uf COMMAND[:N]  refuse a configuration command with UF, always or at its\n"
    "                    Nth use; may be given several times\n"
    "  --mute COMMAND[:N]  execute it but do not answer\n"
    "  --config-delay SECONDS  delay before each answer of the configuration mode (0)\n"
    "  --restart SECONDS  a unit that restarts is silent for this time (6)\n"
    "\n"
    "  --make-image FILE  only write an image of new software to FILE\n"
    "  --image-segments N  its segments, 0 to 255, of all kinds in turn (4)\n"
    "  --image-bytes N   its data bytes (400000)\n"
    "  --image-block N   data bytes of a block, at most (25600)\n"
    "  --image-version V  its version, with two decimals (4.00)\n"
    "  --erase SECONDS   how long the unit removes its old software (3)\n"
    "  --refuse-block N[:T]  refuse data block N once or T times; may be given several\n"
    "                    times, as may the next three\n"
    "  --refuse-header N[:T]  the same after the header of the block\n"
    "  --wrong-echo N[:T]  echo the command of block N wrongly; 0: the catalogue\n"
    "  --bad-segment N   the check of segment N fails\n"
    "  --wrong-check-echo N  echo the check of segment N wrongly\n"
    "  --refuse-catalog  refuse the catalogue\n"
    "  --refuse-erase    refuse to remove the old software\n"
    "  --silent-at N     fall silent at data block N; 0: at the catalogue\n"
    "\n"
    "  --erb             an ERB unit with its login and four units as MUBs; on\n"
    "                    TCP, Corvex expects it at --tcp 24\n"
    "  --erb-user NAME   the user name of the login (root)\n"
    "  --erb-password P  the password of the login (zzz)\n"
    "  --erb-in-use N    MUB N, 0 to 3, is in use; may be given several times\n"
    "  --erb-broken N    MUB N does not open; may be given several times\n"
    "  --erb-lingers     a MUB stays in use after its connection is lost\n"
    "  --erb-delay SECONDS  delay before each answer of the ERB unit (0)\n"
    "\n"
    "  --seed N          seed of the simulated readings and of the faults (1)\n"
    "  --garble SHARE    flip a bit in this share of the bytes sent, 0 to 1\n"
    "  --drop SHARE      lose this share of the bytes sent, 0 to 1\n"
    "  --late SECONDS    send everything with this delay\n"
    "  --cut             send in pieces of random size\n"
    "  --silent          send nothing at all\n"
    "  --hangup N        hang up after sending N bytes\n"
    "  --help            show this text\n";

Arguments ParseArguments(const std::vector<std::string>& words, std::string& error) {
  return Parser().Parse(words, error);
}

}  // namespace corvex::simulation::host
