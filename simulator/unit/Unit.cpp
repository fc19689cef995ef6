#include "unit/Unit.h"

#include <algorithm>
#include <utility>

#include "unit/Wire.h"

namespace corvex::simulation {
namespace {

constexpr char kCancel = 24;
constexpr std::string_view kSoftware = "software";
constexpr const char* kLarkModel = "204938";

std::string Upper(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

std::string Reply(std::string_view text) {
  return "\r\n" + std::string(text) + "\r\n";
}

std::string UpgradeReply(UpgradeAnswer answer) {
  switch (answer) {
    case UpgradeAnswer::Protocol:
      return Reply("PROTOCOL 1") + Reply("OK");
    case UpgradeAnswer::Disallowed:
      return Reply("DISALLOWED") + Reply("OK");
    case UpgradeAnswer::PasswordDisallowed:
      return Reply("PWDISALLOWED") + Reply("OK");
    case UpgradeAnswer::Error:
      break;
  }
  return Reply("ERROR");
}

}  // namespace

Unit::Unit(EventLoop& loop, UnitOptions options, Send send)
    : options_(std::move(options)),
      send_(std::move(send)),
      status_(loop, options_.startTime, options_.modelReply, options_.mubInfo, options_.seed),
      mmi_(loop, status_, send_, [this] { EndTagMode(); }),
      keys_(loop, [this](Key key) { Press(key); }),
      tourKeys_(loop, [this](Key key) { mmi_.Press(key); }),
      tour_(loop,
            [this](std::string_view bytes) {
              for (const char c : bytes) tourKeys_.Take(c);
            }),
      tracer_(loop, status_, send_),
      testShell_(loop, send_, options_.seed),
      config_(loop, options_.config, options_.modelReply.find(kLarkModel) != std::string::npos, send_),
      loader_(loop, options_.loader, send_),
      restarting_(loop),
      ticker_(loop),
      tracesUnasked_(options_.trace) {
  status_.SetValue(kSoftware, "3.14");
  loader_.onBoot = [this](std::optional<int> version) { Boot(version); };
}

void Unit::Receive(std::string_view bytes) {
  std::string echo;
  std::string noEcho;
  const auto flush = [&] {
    if (!echo.empty()) send_(std::exchange(echo, {}));
  };
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (restarting_.Running() || dead_) return;
    if (loader_.Running()) return loader_.Receive(bytes.substr(at));
    const char c = bytes[at];
    if (c == kCancel) {
      Cancel();
    } else if (tagMode_) {
      keys_.Take(c);
    } else if (const auto line = commandLine_.Take(c, config_.Running() ? noEcho : echo)) {
      flush();
      TakeLine(*line);
    }
  }
  flush();
}

void Unit::LineUp() {
  Cancel();
}

void Unit::LineDown() {
  Cancel();
}

void Unit::Cancel() {
  EndTagMode();
  testShell_.Stop();
  config_.Stop();
  commandLine_.Clear();
}

void Unit::TakeLine(const CommandLine::Line& line) {
  if (testShell_.Running()) {
    return testShell_.Execute(line.tooLong ? std::string_view("too long") : std::string_view(line.text));
  }
  const std::string command = Upper(line.text);
  if (command == "AT+WQUILRESET") return Restart();
  if (command == "AT+WQUILCONFIG") return config_.Start();
  if (command == "AT+WQUILCSWLOAD" && options_.upgrade == UpgradeAnswer::Protocol) {
    Cancel();
    return loader_.Start();
  }
  config_.Running() ? config_.Execute(line) : Execute(line, command);
}

void Unit::Execute(const CommandLine::Line& line, const std::string& command) {
  if (!command.starts_with("AT")) return;  // noise, or text for another receiver
  if (line.tooLong) return send_(Reply("ERROR"));
  if (command == "AT+WQUILSTARTTMLB") {
    send_(Reply("OK"));
    return StartTagMode();
  }
  if (command == "AT+WQUILTEST") {
    send_(Reply("OK"));
    return testShell_.Start();
  }
  send_(Answer(command));
}

std::string Unit::Answer(std::string_view command) {
  if (command == "ATE0" || command == "ATE1") {
    commandLine_.SetEcho(command == "ATE1");
    return Reply("OK");
  }
  if (command == "AT+GMM") return Reply(options_.modelReply) + Reply("OK");
  if (command == "AT+WQUILCSWVLOAD") return UpgradeReply(options_.upgrade);
  if (command == "ATI") return Reply("Corvex Marine " + options_.modelReply) + Reply("OK");
  if (command == "AT+GMI") return Reply("Corvex Marine") + Reply("OK");
  if (command == "AT+GMR") return Reply(status_.Value(kSoftware)) + Reply("OK");
  if (command == "AT+GSN") return Reply("0020551") + Reply("OK");
  if (command == "AT+CSQ") return Reply("+CSQ: " + status_.Value("signal") + ",0") + Reply("OK");
  if (command == "AT" || command == "AT+ERB_TRANSPARENT_MODE") return Reply("OK");
  return Reply("ERROR");
}

void Unit::Restart() {
  Cancel();
  config_.Restart();
  commandLine_.SetEcho(true);
  ++restarts_;
  restarting_.Start(options_.restartTime, [] {});
  if (onRestart) onRestart();
}

/// Starts the new software; its version is a hundred times `version`.
void Unit::Boot(std::optional<int> version) {
  dead_ = !version;
  if (version) {
    std::string text = std::to_string(*version / 100) + '.';
    if (*version % 100 < 10) text += '0';
    status_.SetValue(kSoftware, text + std::to_string(*version % 100));
  }
  Restart();
}

void Unit::StartTagMode() {
  tagMode_ = true;
  ticks_ = 0;
  mmi_.Start();
  send_(status_.Report());
  ticker_.Start(options_.tick, [this] { Tick(); });
  if (options_.tour) tour_.Start();
}

void Unit::EndTagMode() {
  tagMode_ = false;
  ticker_.Stop();
  tour_.Stop();
  tracer_.Stop();
  keys_.Clear();
  tourKeys_.Clear();
  mmi_.Stop();
}

void Unit::Press(Key key) {
  switch (key.kind) {
    case KeyKind::TraceOn:
    case KeyKind::TraceOff:
      tracesUnasked_ = false;
      return tracer_.SwitchRecords(key.kind == KeyKind::TraceOn);
    case KeyKind::TraceFlush:
      return tracer_.Flush();
    case KeyKind::ChannelTraceOn:
    case KeyKind::ChannelTraceOff:
      return tracer_.SwitchChannels(key.kind == KeyKind::ChannelTraceOn);
    case KeyKind::Repaint:
      mmi_.Press(key);
      // A PC that requests the screen has lost it, and with it the readings.
      return send_(status_.Report());
    case KeyKind::Escape:
      // The PC also sends ESC to open a session. On the idle screen it has no effect, so it does not count as
      // a key.
      if (mmi_.AtIdle()) return;
      break;
    default:
      break;
  }
  tour_.Stop();
  mmi_.Press(key);
}

void Unit::Tick() {
  ticker_.Start(options_.tick, [this] { Tick(); });
  ++ticks_;
  send_(status_.Tick());
  mmi_.Refresh();
  if (tracesUnasked_ && ticks_ % 7 == 3) {
    send_(TraceRecord(status_.Text("rx {signal} dB/Hz, unit {temperature} C, supply {supply} C")));
  }
}

}  // namespace corvex::simulation
