#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "link/WireLog.h"
#include "link/modTelnet.h"
#include "platform/Platform.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"

namespace corvex {

/// The one duplex link to the modem, over a serial port or over TCP; the setting `lan` decides at each use.
///
/// What is received collects in the receive buffer, and in the modes that show it the dispatcher is called.
/// What cannot be sent is dropped in silence, and the missing answer shows it: the links of these terminals
/// come and go, and every dialogue above has its own rounds. All waits pump events, so that timers, menu
/// commands and received bytes run inside them. Each can be given up (see EventLoop::Wait).
class TerminalLink {
 public:
  /// How long the closing of the serial port waits for what was written to leave. That is 240 bytes at the
  /// slowest speed, more than any line of a panel with the farewell after it, while a line held by its flow
  /// control does not keep the user long.
  static constexpr EventLoop::Time kOutputTime = std::chrono::seconds(1);

  TerminalLink(const Platform& platform, SettingsStore& settings, ReceiveBuffer& received, MainState& main);
  TerminalLink(const TerminalLink&) = delete;
  TerminalLink& operator=(const TerminalLink&) = delete;
  ~TerminalLink();

  bool LinkIsLan() const { return settings_.config.lan.Get(); }
  bool LoginComplete() const { return login_.LoginComplete(); }
  /// The login waits for the user, who is typing the password.
  bool AsksPassword() const { return login_.Asking(); }

  // Sending.

  /// Sends a text over the socket if that is the route and it is connected, otherwise over the serial port if
  /// that is open.
  void WriteText(std::string_view text);
  /// Sends one byte, over a socket only behind a complete login.
  void WriteByte(std::uint8_t byte);
  /// Sends a block once the one before has left. The only send that tells of a failure.
  void WriteBlock(std::string_view bytes);
  /// Waits, without limit of time, until the serial port has sent all; a socket is not waited for.
  void DrainOutput();
  /// Shakes the modem out of whatever it is doing: opens the link if need be, sends CAN, and waits 0.05 s.
  void SendCancel();
  /// Asks the modem to paint the screen anew.
  void SendTagModeRequest();

  // Opening and closing.

  /// True if the link can be written to. Cheap when it is up. A serial port that cannot be opened counts as
  /// open, and the missing answer tells.
  bool EnsureLinkOpen();
  /// Whether the last EnsureLinkOpen could not even begin to connect, for want of a usable address.
  bool OpenRefused() const { return openRefused_; }
  /// What was written to the serial port before leaves first, within kOutputTime.
  void CloseLink();
  /// Tells the ERB unit that the session with the present MUB ends.
  void LeaveMub();
  /// The next opening logs in anew. Over a serial port nothing else asks for it: the ERB unit keeps its
  /// session while the port is closed, and so does the login.
  void ForgetLogin() { login_.ResetLogin(); }
  /// The same once the link is closed: no modem has answered, and it may be the ERB unit that has begun anew.
  void DoubtLogin() { loginDoubted_ = true; }

  // Command and response.

  /// Sends a command and waits for "OK" or a tag packet, 0.05 s a round for eight rounds, and sends it once
  /// more in between. True if the modem answered; it is then asked to paint the screen.
  bool SendAndAwaitOk(std::string_view command);
  /// Asks for the tag stream.
  bool EnterTagMode();

  /// Called after bytes came in, in the modes that dispatch them.
  std::function<void()> processReceived;

 private:
  bool SocketReady() const;
  bool Dispatches() const;
  void OnComm(SerialControl::CommEvent event);
  void OnDataArrival();
  bool OpenSocket();
  void RecordSocketOpen();
  void OpenSerial();
  bool LanLogin();
  bool ErbRelogin();
  bool AwaitLogin(EventLoop::Time began, int giveUpAt);
  void LoginStep();
  void WritePassword(std::string_view password);
  bool Transmit(std::string_view bytes, std::string_view shown);
  bool Enqueue(std::string_view bytes, std::string_view shown);
  void RecordOutput();
  void LetOutputLeave();
  void DropOutput();

  EventLoop& loop_;
  SerialControl& comPort_;
  SocketControl& sock_;
  Dialogs& dialogs_;
  SettingsStore& settings_;
  ReceiveBuffer& received_;
  MainState& main_;
  WireLog log_;
  TelnetLogin login_;
  bool commBusy_ = false;
  bool openRefused_ = false;
  bool loginDoubted_ = false;
  EventLoop::Time outputWait_{0};
  EventLoop::TimerId outputTimer_ = 0;  // looks after output that is recorded when it has left
  bool socketRecorded_ = true;          // the present connection, if there is one, stands in the recording
};

}  // namespace corvex
