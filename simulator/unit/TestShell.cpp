#include "unit/TestShell.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "unit/Words.h"

namespace corvex::simulation {
namespace {

constexpr std::array<std::string_view, 5> kKinds{"tdm", "scpc", "hsd", "bmscpc", "hsd128"};
constexpr int kLastChannel = 28000;
constexpr int kReportsToLock = 2;
constexpr long long kBlocksAReport = 480;

/// Parses a number of one to five digits and, if allowed, up to three decimals. Returns -1 if the text has
/// another form.
double Number(std::string_view text, bool decimals) {
  const std::size_t point = decimals ? std::min(text.find('.'), text.size()) : text.size();
  if (point < 1 || point > 5 || text.size() > point + 4 || text.size() == point + 1) return -1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (i != point && (text[i] < '0' || text[i] > '9')) return -1;
  }
  return std::stod(std::string(text));
}

bool IsOneOf(std::string_view text, std::string_view digits) {
  return text.size() == 1 && digits.find(text[0]) != std::string_view::npos;
}

/// Channels are spaced 2.5 kHz apart.
std::string Megahertz(int base, int channel) {
  const int hertz100 = channel * 25;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%d.%04d MHz", base + hertz100 / 10000, hertz100 % 10000);
  return text.data();
}

}  // namespace

void TestShell::Start() {
  Stop();
  running_ = true;
  send_("\r\nTest interface 2.20\r\n" + std::string(kPrompt));
}

void TestShell::Stop() {
  running_ = false;
  debug_ = false;
  channel_.reset();
  reports_.Stop();
  trace_.Stop();
}

void TestShell::Execute(std::string_view line) {
  if (line == "quit") {
    Stop();
    return send_("\r\nOK\r\n");
  }
  send_("\r\n" + Answer(line) + std::string(kPrompt));
}

std::string TestShell::Answer(std::string_view line) {
  if (line.find_first_not_of(' ') == std::string_view::npos) return {};
  if (line == "stop") return StopChannel();
  if (line == "debug" || line == "nodebug") {
    debug_ = line == "debug";
    return debug_ ? "debug on\r\n" : "debug off\r\n";
  }
  if (line == "trace") {
    trace_.Start(kTraceTime, [this] { Trace(); });
    return "trace on\r\n";
  }
  if (line == "notrace") {
    trace_.Stop();
    return "trace off\r\n";
  }
  if (line == "flush") return "flushed\r\n";
  if (line.starts_with("dsp ")) return "DSP: " + std::string(line.substr(4)) + "\r\nOK\r\n";
  if (line.starts_with("command ")) return "CPU: " + std::string(line.substr(8)) + "\r\nOK\r\n";
  auto channel = Parse(line);
  if (!channel) return "ERROR\r\n";
  channel_ = std::move(channel);
  reports_.Start(kReportTime, [this] { Report(); });
  return channel_->kind + " rx " + Megahertz(1510, channel_->receives) +
         (channel_->transmits ? " tx " + Megahertz(1611, channel_->sends) + " level " + channel_->level
                              : std::string(" tx off")) +
         "\r\nOK\r\n";
}

std::optional<TestShell::Channel> TestShell::Parse(std::string_view line) {
  const std::vector<std::string_view> words = Words(line);
  if (words.size() != 8 || std::find(kKinds.begin(), kKinds.end(), words[0]) == kKinds.end()) {
    return std::nullopt;
  }
  const double receives = Number(words[1], false);
  const double sends = Number(words[2], false);
  const double level = Number(words[3], true);
  const bool good = receives >= 0 && receives <= kLastChannel && sends >= 0 && sends <= kLastChannel &&
                    level >= 0 && level < 64 && IsOneOf(words[4], "0123") && IsOneOf(words[5], "01") &&
                    IsOneOf(words[6], "01") && Number(words[7], true) >= 0;
  if (!good) return std::nullopt;
  return Channel{.kind = std::string(words[0]),
                 .receives = static_cast<int>(receives),
                 .sends = static_cast<int>(sends),
                 .level = std::string(words[3]),
                 .transmits = words[5] == "1"};
}

std::string TestShell::StopChannel() {
  if (!channel_) return "no channel\r\n";
  const std::string total =
      std::to_string(channel_->errors) + " errors in " + std::to_string(channel_->blocks) + " blocks\r\n";
  reports_.Stop();
  channel_.reset();
  return "stopped, " + total + "OK\r\n";
}

void TestShell::Report() {
  reports_.Start(kReportTime, [this] { Report(); });
  Channel& channel = *channel_;
  ++channel.reports;
  const bool locked = channel.reports > kReportsToLock;
  std::string report = "\r\n" + channel.kind + ' ' + Megahertz(1510, channel.receives);
  if (locked) {
    channel.blocks += kBlocksAReport;
    channel.errors += Drift(2);
    report += "  " + std::to_string(50 + Drift(3)) + '.' + std::to_string(Drift(9)) +
              " dB/Hz  lock  errors " + std::to_string(channel.errors) + '/' + std::to_string(channel.blocks);
  } else {
    report += "  searching";
  }
  if (debug_)
    report += "\r\n  afc " + std::to_string(Drift(40) - 20) + " Hz, agc " + std::to_string(40 + Drift(4));
  send_(report + "\r\n" + std::string(kPrompt));
}

void TestShell::Trace() {
  trace_.Start(kTraceTime, [this] { Trace(); });
  send_("\r\n  trace: agc " + std::to_string(40 + Drift(4)) + (channel_ ? ", channel on" : ", no channel"));
}

}  // namespace corvex::simulation
