#include "link/modComSock.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>

#include "base/ScopedFlag.h"
#include "base/Text.h"

namespace corvex {

namespace {

constexpr std::string_view kCancel = "\x18";
constexpr std::string_view kTagModeRequest = "\x12";
constexpr std::string_view kTransparentMode = "AT+ERB_TRANSPARENT_MODE";
constexpr std::int32_t kErbPort = 24;

}  // namespace

TerminalLink::TerminalLink(const Platform& platform, SettingsStore& settings, ReceiveBuffer& received,
                           MainState& main)
    : loop_(platform.loop),
      comPort_(platform.comPort),
      sock_(platform.sock),
      dialogs_(platform.loop, platform.dialogs),
      settings_(settings),
      received_(received),
      main_(main),
      log_(loop_, settings),
      login_(settings, {.writeText = [this](std::string_view text) { WriteText(text); },
                        .writePassword = [this](std::string_view password) { WritePassword(password); },
                        .sendCancel = [this] { SendCancel(); },
                        .ask = [this](std::string_view prompt,
                                      std::string_view title) { return dialogs_.InputBox(prompt, title); }}) {
  comPort_.onComm = [this](SerialControl::CommEvent event) { OnComm(event); };
  sock_.onDataArrival = [this] { OnDataArrival(); };
  sock_.onClose = [this] {
    log_.Note("closed by the other side");
    sock_.Close();
  };
  received_.onRoom = [this] {
    loop_.Post([this] {
      if (sock_.GetState() != SocketControl::kClosed) OnDataArrival();
      if (comPort_.PortOpen()) OnComm(SerialControl::kEvReceive);
    });
  };
}

TerminalLink::~TerminalLink() {
  RecordOutput();
  log_.DropQueued();
  loop_.Cancel(outputTimer_);
  comPort_.onComm = nullptr;
  sock_.onDataArrival = nullptr;
  sock_.onClose = nullptr;
  received_.onRoom = nullptr;
}

bool TerminalLink::SocketReady() const {
  return LinkIsLan() && sock_.GetState() == SocketControl::kConnected;
}

bool TerminalLink::Dispatches() const {
  return main_.mode == ModemMode::Terminal || main_.mode == ModemMode::AtMode ||
         main_.mode == ModemMode::TestInterface;
}

/// The recording shows the bytes as `shown`.
bool TerminalLink::Transmit(std::string_view bytes, std::string_view shown) {
  if (!SocketReady()) return Enqueue(bytes, shown);
  sock_.SendData(bytes);
  log_.Sent(shown);
  return true;
}

bool TerminalLink::Enqueue(std::string_view bytes, std::string_view shown) {
  if (!comPort_.Output(bytes)) return false;
  log_.Queued(shown, bytes.size());
  RecordOutput();
  return true;
}

/// Records the bytes that have left the serial port. Repeats this by timer until all bytes have left.
void TerminalLink::RecordOutput() {
  if (!log_.HasQueued() || !comPort_.PortOpen()) return;
  const bool some = log_.Unsent(static_cast<std::size_t>(comPort_.OutBufferCount()));
  if (!log_.HasQueued() || outputTimer_ != 0) return;
  // There is no event when a byte leaves, so poll. While bytes are leaving, poll as often as DrainOutput.
  constexpr EventLoop::Time kSoon = std::chrono::milliseconds(1);
  constexpr EventLoop::Time kLatest = std::chrono::milliseconds(32);
  outputWait_ = some ? kSoon : std::clamp(2 * outputWait_, kSoon, kLatest);
  outputTimer_ = loop_.After(outputWait_, [this] {
    outputTimer_ = 0;
    RecordOutput();
  });
}

void TerminalLink::WriteText(std::string_view text) {
  Transmit(text, text);
}

void TerminalLink::WritePassword(std::string_view password) {
  log_.HideEcho(password);
  Transmit(std::string(password) + std::string(kCrLf), WireLog::kPassword);
}

void TerminalLink::WriteByte(std::uint8_t byte) {
  const char text = static_cast<char>(byte);
  if (LinkIsLan() && !(SocketReady() && LoginComplete())) return;
  WriteText({&text, 1});
}

void TerminalLink::WriteBlock(std::string_view bytes) {
  DrainOutput();
  if (SocketReady() && LoginComplete()) {
    sock_.SendData(bytes);
    log_.Sent(bytes);
  } else if (comPort_.PortOpen()) {
    Enqueue(bytes, bytes);
  } else {
    dialogs_.MessageBox("Inconsistent state during block write");
  }
}

void TerminalLink::DrainOutput() {
  if (SocketReady() && LoginComplete()) return;
  if (!comPort_.PortOpen()) return;
  // There is no event when a byte leaves, so poll every 1 ms, the time of one byte at 9600 baud.
  EventLoop::Wait wait(loop_);
  while (comPort_.PortOpen() && comPort_.OutBufferCount() >= 1) {
    wait.Pump(loop_.Now() + std::chrono::milliseconds(1));
  }
}

/// Like DrainOutput, but waits no longer than kOutputTime. Used before output is discarded.
void TerminalLink::LetOutputLeave() {
  const auto limit = loop_.Now() + kOutputTime;
  EventLoop::Wait wait(loop_);
  while (comPort_.OutBufferCount() >= 1 && loop_.Now() < limit) {
    wait.Pump(loop_.Now() + std::chrono::milliseconds(1));
  }
}

void TerminalLink::DropOutput() {
  RecordOutput();
  comPort_.DiscardOutput();
  log_.DropQueued();
}

void TerminalLink::SendCancel() {
  if (!EnsureLinkOpen()) return;
  WriteText(kCancel);
  Pause(loop_, 0.05);
}

void TerminalLink::SendTagModeRequest() {
  WriteText(kTagModeRequest);
}

void TerminalLink::OnComm(SerialControl::CommEvent event) {
  main_.rxSeen = true;  // for every kind of event
  if (event == SerialControl::kEvLineLost) {
    log_.DropQueued();
    log_.Note("line lost");
    return;
  }
  if (main_.mode == ModemMode::Closing) return;
  const bool dispatches = Dispatches();
  // Intentional: while the dispatcher runs, bytes stay in the port until the next event. The dispatcher may
  // wait, and a dialogue may start during that wait. Its mode does not dispatch, so its bytes are still read
  // here.
  if (dispatches ? commBusy_ : !received_.HasRoom()) return;
  const std::string text = comPort_.Input();
  RecordOutput();  // first, so that an answer is recorded after its command
  log_.Received(text);
  received_.AppendRx(text);
  if (!dispatches || !processReceived) return;
  const ScopedFlag busy(commBusy_);
  processReceived();
}

void TerminalLink::OnDataArrival() {
  // No guard against nested calls here: each call appends its bytes in the order of arrival.
  if (!received_.HasRoom() && !(LoginComplete() && Dispatches())) return;
  const std::string text = sock_.GetData();
  RecordSocketOpen();  // the first bytes can arrive before OpenSocket sees the connection
  log_.Received(text);
  if (LoginComplete() && main_.mode == ModemMode::Upgrade) {
    received_.AppendRxBytes(text);
    return;
  }
  received_.AppendRx(text);
  if (LoginComplete() && Dispatches() && processReceived) processReceived();
}

bool TerminalLink::EnsureLinkOpen() {
  openRefused_ = false;
  if (LinkIsLan()) {
    if (SocketReady() && LoginComplete()) return true;
    CloseLink();
    Pause(loop_, 0.05);
    // Reset the previous session's login now. The first prompt can arrive before the next login begins. If
    // the login still counted as complete, a mode that shows received text would consume the prompt.
    login_.ResetLogin();
    return OpenSocket() && LanLogin();
  }
  OpenSerial();
  if (!settings_.config.erbaccess.Get() || LoginComplete()) return true;
  return ErbRelogin();
}

void TerminalLink::OpenSerial() {
  if (comPort_.PortOpen()) return;
  // A port that cannot be opened is not reported here. The caller reports the missing answer.
  if (comPort_.Open()) {
    log_.Opened("serial COM" + std::to_string(comPort_.CommPort()) + ' ' + comPort_.DeviceName() + ' ' +
                comPort_.Settings());
  }
}

bool TerminalLink::OpenSocket() {
  constexpr int kRounds = 9;
  received_.ClearRx();
  for (int round = 0; round < kRounds;) {
    const auto state = sock_.GetState();
    if (state == SocketControl::kConnected) {
      RecordSocketOpen();
      return true;
    }
    if (state == SocketControl::kClosed) {
      // This round is not counted. If the socket closes again immediately, the loop retries forever.
      // Intentional.
      socketRecorded_ = false;
      const auto port = settings_.config.erbaccess.Get() ? kErbPort : ToInt32(settings_.config.lanport.Get());
      if (!sock_.Connect(settings_.config.lanaddress.Get(), port.value_or(0))) {
        openRefused_ = true;
        return false;
      }
    } else {
      ++round;
    }
    Pause(loop_, 0.1);
  }
  sock_.Close();
  return false;
}

void TerminalLink::RecordSocketOpen() {
  if (std::exchange(socketRecorded_, true)) return;
  log_.Opened("lan " + sock_.RemoteHost() + ':' + std::to_string(sock_.RemotePort()));
}

bool TerminalLink::LanLogin() {
  login_.ResetLogin();
  const auto began = loop_.Now();
  for (EventLoop::Wait wait(loop_); sock_.GetState() != SocketControl::kConnected;) {
    if (loop_.Now() - began > std::chrono::seconds(20)) return false;
    wait.Pump(began + std::chrono::milliseconds(20001));
  }
  login_.ResetLogin();
  if (!settings_.config.erbaccess.Get()) {
    WriteText(std::string(kTransparentMode) + std::string(kCrLf));
    login_.SetConnected();
    return true;
  }
  LoginStep();
  return AwaitLogin(began, 5);
}

bool TerminalLink::ErbRelogin() {
  const auto began = loop_.Now();
  login_.ResetLogin();
  WriteText(std::string(kTransparentMode) + std::string(kCrLf));
  Pause(loop_, 0.1);
  LoginStep();
  return AwaitLogin(began, 8);
}

bool TerminalLink::AwaitLogin(EventLoop::Time began, int giveUpAt) {
  while (!login_.LoginFailed() && !login_.LoginComplete()) {
    Pause(loop_, 0.1);
    LoginStep();
    const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(loop_.Now() - began).count();
    // Intentional: gives up only in exactly this second. A login that was delayed past this second continues
    // until the 10 s limit below.
    if (elapsed == giveUpAt) {
      CloseLink();
      Pause(loop_, 0.2);
      login_.ResetLogin();
      return false;
    }
    if (elapsed > 10) return false;
  }
  return !login_.LoginFailed();
}

void TerminalLink::LoginStep() {
  login_.LoginStep(received_.TakeRx());
  if (login_.state() != LoginState::PasswordSent) log_.ForgetSecret();
}

void TerminalLink::CloseLink() {
  if (LinkIsLan() && sock_.GetState() > SocketControl::kClosed) {
    if (SocketReady() && LoginComplete()) {
      SendCancel();
      Pause(loop_, 0.1);
      received_.DiscardRx();
      Pause(loop_, 0.1);
      WriteText(kTransparentMode);  // no line end at the end of a session; intentional
    } else if (settings_.config.erbaccess.Get()) {
      WriteText(kTransparentMode);
    }
    log_.Closed();
    sock_.Close();
    Pause(loop_, 0.1);
    return;
  }
  LetOutputLeave();
  DropOutput();  // first, because switching off the handshaking could release held bytes
  comPort_.SetHandshaking(0);
  comPort_.DiscardInput();
  Pause(loop_, 0.05);
  if (comPort_.PortOpen()) {
    RecordOutput();
    log_.DropQueued();
    log_.Closed();
    comPort_.Close();
  }
  if (std::exchange(loginDoubted_, false)) login_.ResetLogin();
}

void TerminalLink::LeaveMub() {
  SendCancel();
  Pause(loop_, 0.1);
  WriteText(kTransparentMode);
  Pause(loop_, 0.1);
}

bool TerminalLink::SendAndAwaitOk(std::string_view command) {
  const std::string line = std::string(command) + std::string(kCrLf);
  SendCancel();
  received_.DiscardRx();
  WriteText(line);
  std::string answer;
  for (int round = 1; round <= 8; ++round) {
    Pause(loop_, 0.05);
    received_.TakeRxInto(answer);
    if (Contains(UpperCase(answer), "OK") || Contains(answer, "<tml>")) {
      SendTagModeRequest();
      return true;
    }
    if (round == 3) WriteText(line);
  }
  return false;
}

bool TerminalLink::EnterTagMode() {
  constexpr std::string_view kCommand = "AT+WQUILSTARTTMLB";
  const std::int32_t phase = settings_.config.mmiphase.Get();
  if (SendAndAwaitOk(kCommand)) return true;
  // The second attempt sends the same command. Only the stored phase shows that it was needed.
  if (!SendAndAwaitOk(kCommand)) return false;
  // Unsigned, because the settings file may contain any number and the subtraction must not overflow.
  settings_.config.mmiphase.Set(static_cast<std::int32_t>(3u - static_cast<std::uint32_t>(phase)));
  return true;
}

}  // namespace corvex
