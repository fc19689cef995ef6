#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace corvex {

/// The serial port as the link uses it. Failures are values: a port that cannot be opened, or whose device
/// goes away, is simply not open. Events arrive as posted tasks, never from within a call.
class SerialControl {
 public:
  enum CommEvent : int {
    kEvReceive = 2,   ///< bytes have arrived
    kEvLineLost = 3,  ///< the device has gone; the port is closed already
  };

  virtual ~SerialControl() = default;

  /// The port number, 1 and up. Another is refused (false), and so is any while the port is open.
  virtual bool SetCommPort(std::int16_t number) = 0;
  virtual std::int16_t CommPort() const = 0;

  /// Line parameters such as "115200,n,8,1": speed, parity (n, e, o, m, s), data bits, stop bits. The text is
  /// kept as given; parameters that the system refuses show when the port opens. While the port is open they
  /// take effect at once.
  virtual void SetSettings(const std::string& settings) = 0;
  virtual std::string Settings() const = 0;

  /// 0 none, 1 XON/XOFF, 2 RTS/CTS, 3 both.
  virtual void SetHandshaking(std::int32_t handshaking) = 0;
  virtual std::int32_t Handshaking() const = 0;

  /// Opens the port and throws away what had arrived before. False if it is not to be had.
  virtual bool Open() = 0;
  /// Drops what has not left yet; a caller that wants it to leave waits for that first.
  virtual void Close() = 0;
  virtual bool PortOpen() const = 0;

  /// Takes all bytes that wait.
  virtual std::string Input() = 0;
  virtual void DiscardInput() = 0;

  /// Queues bytes. False if they were dropped: the port is closed, or too many wait already.
  virtual bool Output(std::string_view bytes) = 0;
  /// Bytes that were queued and have not left yet, neither from here nor from the system's own queue. 0 on a
  /// closed port.
  virtual std::int32_t OutBufferCount() const = 0;
  /// Takes back what has not left yet.
  virtual void DiscardOutput() = 0;

  /// The system's name of the device behind the port number, such as "/dev/ttyUSB0".
  virtual std::string DeviceName() const = 0;

  /// Tells of received bytes or of a change of the line.
  std::function<void(CommEvent)> onComm;
};

/// Whether a serial device can be used, as far as can be told without opening it.
enum class PortState {
  Absent,
  Usable,  ///< Unless another program has it; only opening tells that.
  NoPermission,
};

struct PortInfo {
  PortState state = PortState::Absent;
  std::string description;  ///< What the device calls itself; empty if it does not.
  std::string group;        ///< With NoPermission: the group that may use it; empty if no group does.
};

/// What the system knows of its serial devices. Nothing of it opens one: that alone moves the lines of a
/// modem which another program may be working with.
class SerialPorts {
 public:
  virtual ~SerialPorts() = default;
  /// Names of the devices that the system lists; pseudo terminals and links are not among them.
  virtual std::vector<std::string> Devices() const = 0;
  /// Any device, listed or not.
  virtual PortInfo Probe(const std::string& device) const = 0;
};

/// The TCP connection as the link uses it. A failure shows as the state kError, which stays until Close.
/// Events arrive as posted tasks, never from within a call.
class SocketControl {
 public:
  enum State : std::int16_t {
    kClosed = 0,
    kResolving = 4,
    kConnecting = 6,
    kConnected = 7,
    kPeerClosing = 8,
    kError = 9,
  };

  virtual ~SocketControl() = default;

  virtual State GetState() const = 0;

  /// Begins to connect from the state kClosed. False if it cannot even begin: no host name, a port outside 1
  /// to 65535, or a state other than kClosed.
  virtual bool Connect(const std::string& host, std::int32_t port) = 0;
  /// Closes at once for the caller; what was sent before is still delivered.
  virtual void Close() = 0;

  virtual void SendData(std::string_view bytes) = 0;
  /// Takes all bytes that wait.
  virtual std::string GetData() = 0;

  virtual std::string RemoteHost() const = 0;
  virtual std::int32_t RemotePort() const = 0;
  virtual std::string LocalAddress() const = 0;

  /// Bytes wait to be taken.
  std::function<void()> onDataArrival;
  /// The peer has closed; bytes that came before were announced before.
  std::function<void()> onClose;
};

}  // namespace corvex
