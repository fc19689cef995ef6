#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "link/WireLog.h"
#include "link/modTelnet.h"
#include "platform/Modal.h"
#include "platform/Platform.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"

namespace corvex {

/// The program's only connection to the modem: a duplex link over a serial port or over TCP. The setting
/// `lan` selects the route and is read at each use.
///
/// Received bytes are appended to the receive buffer. Then `processReceived` is called, but only in modes
/// that show received bytes.
///
/// Bytes that cannot be sent are dropped without an error, except by WriteBlock. The caller notices the
/// missing answer: links to these terminals are often interrupted, so every exchange has its own retries.
///
/// All waits pump events, so timers, menu commands and received bytes are handled during a wait. Every wait
/// can be abandoned (see EventLoop::Wait).
class TerminalLink {
 public:
  /// How long CloseLink waits for the output of the serial port to leave. At the slowest speed this is enough
  /// for 240 bytes, more than any line of a panel plus the commands that end a session. It is short enough
  /// not to delay the user when flow control blocks the line.
  static constexpr EventLoop::Time kOutputTime = std::chrono::seconds(1);

  TerminalLink(const Platform& platform, SettingsStore& settings, ReceiveBuffer& received, MainState& main);
  TerminalLink(const TerminalLink&) = delete;
  TerminalLink& operator=(const TerminalLink&) = delete;
  ~TerminalLink();

  bool LinkIsLan() const { return settings_.config.lan.Get(); }
  bool LoginComplete() const { return login_.LoginComplete(); }
  /// Returns whether the login is waiting for the user to type the password.
  bool AsksPassword() const { return login_.Asking(); }

  // Sending.

  /// Sends a text over the socket if the LAN is selected and connected. Otherwise sends it over the serial
  /// port if that is open.
  void WriteText(std::string_view text);
  /// Sends one byte. If the LAN is selected, the byte is only sent after a complete login.
  void WriteByte(std::uint8_t byte);
  /// Waits until earlier output has left, then sends a block. The only send function that reports an error:
  /// it shows a message box if there is no open link.
  void WriteBlock(std::string_view bytes);
  /// Waits, without a timeout, until the serial port has sent everything. Returns immediately for a socket.
  void DrainOutput();
  /// Cancels the modem's current operation: opens the link if necessary, sends CAN and waits 0.05 s.
  void SendCancel();
  /// Asks the modem to paint its screen again.
  void SendTagModeRequest();

  // Opening and closing.

  /// Opens the link and logs in, if necessary. Returns true if the link can be written to. Cheap when the
  /// link is already open. If no login is due, a serial port that cannot be opened counts as open; the caller
  /// notices the missing answer.
  bool EnsureLinkOpen();
  /// Returns true if the last EnsureLinkOpen did not try to connect because the address is invalid.
  bool OpenRefused() const { return openRefused_; }
  /// Closes the link. Waits up to kOutputTime for the output of the serial port to leave.
  void CloseLink();
  /// Ends the session with the current MUB on the ERB unit.
  void LeaveMub();
  /// Makes the next EnsureLinkOpen log in again. Only needed for a serial port: the ERB unit keeps its
  /// session while the port is closed, so the login normally stays complete.
  void ForgetLogin() { login_.ResetLogin(); }
  /// Like ForgetLogin, but takes effect the next time the serial port is closed. Call this function when no
  /// modem answers, because the ERB unit may have restarted.
  void DoubtLogin() { loginDoubted_ = true; }

  // Command and response.

  /// Sends a command and waits for "OK" or a tag packet, up to eight times 0.05 s. Sends the command once
  /// more after the third time. If the modem answers, asks it to paint its screen and returns true.
  bool SendAndAwaitOk(std::string_view command);
  /// Asks the modem to start the tag stream. Returns false if the modem does not answer.
  bool EnterTagMode();

  /// Called after bytes have been received, in the modes that dispatch them.
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
  AbandonableDialogs dialogs_;
  SettingsStore& settings_;
  ReceiveBuffer& received_;
  MainState& main_;
  WireLog log_;
  TelnetLogin login_;
  bool commBusy_ = false;
  bool openRefused_ = false;
  bool loginDoubted_ = false;
  EventLoop::Time outputWait_{0};
  EventLoop::TimerId outputTimer_ = 0;  // checks which output has left, so that it can be recorded
  bool socketRecorded_ = true;          // the current connection, if any, has been recorded
};

}  // namespace corvex
