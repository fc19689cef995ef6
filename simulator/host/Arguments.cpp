#include "host/Arguments.h"

#include <charconv>
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

/// A text that may pass the line, in a reply of the unit or in what the PC tells it.
bool ReadText(const std::string& word, std::string& text) {
  for (const char c : word) {
    if (c < ' ' || c > '~') return false;
  }
  text = word;
  return true;
}

}  // namespace

const char* const kUsage =
    "corvex-simulator: a simulated terminal unit on a TCP port or a pseudo terminal\n"
    "\n"
    "  --tcp PORT        listen on a TCP port of this machine; 0 takes a free one\n"
    "  --any             with --tcp: on all addresses, not only 127.0.0.1\n"
    "  --pty             make a pseudo terminal, to be opened like a serial port\n"
    "  --link PATH       with --pty: a symbolic link to it\n"
    "\n"
    "  --model TEXT      the reply to at+gmm (204417)\n"
    "  --upgrade WORD    what it says about new software: protocol, disallowed,\n"
    "                    pwdisallowed or error (protocol)\n"
    "  --tour            play through some screens until a key comes\n"
    "  --speed BAUD      send no faster than a serial line of this speed\n"
    "  --play FILE       play a recorded session in place of the unit\n"
    "\n"
    "  --erb             four units as MUBs behind an ERB unit with its login; on\n"
    "                    TCP, Corvex looks for one at --tcp 24\n"
    "  --erb-user NAME   who may log in (root)\n"
    "  --erb-password P  his password (zzz)\n"
    "  --erb-in-use N    MUB N, 0 to 3, is in use; may be given several times\n"
    "  --erb-broken N    MUB N does not open; may be given several times\n"
    "  --erb-lingers     a MUB whose user vanishes stays in use\n"
    "  --erb-delay SECONDS  how long the ERB unit takes for each answer (0)\n"
    "\n"
    "  --seed N          other readings, and other faults (1)\n"
    "  --garble SHARE    turn a bit in this share of the bytes sent, 0 to 1\n"
    "  --drop SHARE      lose this share of the bytes sent, 0 to 1\n"
    "  --late SECONDS    send everything this much later\n"
    "  --cut             send in odd pieces\n"
    "  --silent          send nothing at all\n"
    "  --hangup N        hang up after sending N bytes\n"
    "  --help            this text\n";

Arguments ParseArguments(const std::vector<std::string>& words, std::string& error) {
  Arguments arguments;
  std::uint16_t port = 0;
  std::uint64_t hangUp = 0;
  ErbOptions erb;
  bool erbWanted = false;
  bool erbDescribed = false;

  const auto readTime = [](const std::string& word, EventLoop::Time& time) {
    double seconds = 0;
    if (!ReadNumber<double>(word, 0, 3600, seconds)) return false;
    time = std::chrono::duration_cast<EventLoop::Time>(std::chrono::duration<double>(seconds));
    return true;
  };
  const auto setMub = [&erb](const std::string& word, MubState state) {
    std::size_t number = 0;
    if (!ReadNumber<std::size_t>(word, 0, ErbOptions::kMubs - 1, number)) return false;
    erb.mubs[number] = state;
    return true;
  };

  const std::map<std::string, std::function<void()>> switches{
      {"--help", [&] { arguments.help = true; }},
      {"--any", [&] { arguments.anyAddress = true; }},
      {"--pty", [&] { arguments.pty = true; }},
      {"--tour", [&] { arguments.unit.tour = true; }},
      {"--cut", [&] { arguments.faults.cut = true; }},
      {"--silent", [&] { arguments.faults.silent = true; }},
      {"--erb", [&] { erbWanted = true; }},
      {"--erb-lingers", [&] { erb.lingers = true; }},
  };
  const std::map<std::string, std::function<bool(const std::string&)>> values{
      {"--tcp",
       [&](const std::string& word) {
         if (!ReadNumber<std::uint16_t>(word, 0, 65535, port)) return false;
         arguments.tcpPort = port;
         return true;
       }},
      {"--link",
       [&](const std::string& word) {
         arguments.link = word;
         return !word.empty();
       }},
      {"--model", [&](const std::string& word) { return ReadText(word, arguments.unit.modelReply); }},
      {"--upgrade", [&](const std::string& word) { return ReadUpgrade(word, arguments.unit.upgrade); }},
      {"--speed",
       [&](const std::string& word) { return ReadNumber<int>(word, 50, 10'000'000, arguments.speed); }},
      {"--play",
       [&](const std::string& word) {
         arguments.playFile = word;
         return !word.empty();
       }},
      {"--seed",
       [&](const std::string& word) {
         return ReadNumber<std::uint32_t>(word, 0, 1'000'000'000, arguments.faults.seed);
       }},
      {"--garble",
       [&](const std::string& word) { return ReadNumber<double>(word, 0, 1, arguments.faults.garble); }},
      {"--drop",
       [&](const std::string& word) { return ReadNumber<double>(word, 0, 1, arguments.faults.drop); }},
      {"--erb-user", [&](const std::string& word) { return ReadText(word, erb.user) && !word.empty(); }},
      {"--erb-password", [&](const std::string& word) { return ReadText(word, erb.password); }},
      {"--erb-in-use", [&](const std::string& word) { return setMub(word, MubState::InUse); }},
      {"--erb-broken", [&](const std::string& word) { return setMub(word, MubState::Broken); }},
      {"--erb-delay", [&](const std::string& word) { return readTime(word, erb.answerTime); }},
      {"--late", [&](const std::string& word) { return readTime(word, arguments.faults.late); }},
      {"--hangup",
       [&](const std::string& word) {
         if (!ReadNumber<std::uint64_t>(word, 1, UINT64_MAX, hangUp)) return false;
         arguments.faults.hangUpAfter = hangUp;
         return true;
       }},
  };

  for (auto word = words.begin(); word != words.end(); ++word) {
    erbDescribed |= word->starts_with("--erb-");
    if (const auto found = switches.find(*word); found != switches.end()) {
      found->second();
    } else if (const auto option = values.find(*word); option == values.end()) {
      error = "unknown option " + *word;
    } else if (std::next(word) == words.end()) {
      error = *word + " needs a value";
    } else if (!option->second(*++word)) {
      error = option->first + ": " + *word + " will not do";
    }
    if (!error.empty()) return arguments;
  }
  arguments.unit.seed = arguments.faults.seed;
  if (arguments.help) return arguments;
  if (arguments.pty == arguments.tcpPort.has_value()) error = "one of --tcp and --pty must be given";
  if (arguments.anyAddress && arguments.pty) error = "--any goes with --tcp";
  if (!arguments.link.empty() && !arguments.pty) error = "--link goes with --pty";
  if (erbDescribed && !erbWanted) error = "the options of the ERB unit go with --erb";
  if (erbWanted && !arguments.playFile.empty()) error = "a recording is played without --erb";
  if (erbWanted) {
    erb.serial = arguments.pty;
    erb.unit = arguments.unit;
    arguments.erb = std::move(erb);
  }
  return arguments;
}

}  // namespace corvex::simulation::host
