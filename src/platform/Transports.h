#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace corvex {

/// The serial port, with the functions that the link uses. Failures are reported as values, not as
/// exceptions: if a port cannot be opened, or if its device disappears, the port is simply not open. Events
/// arrive as posted tasks, never during a call.
class SerialControl {
 public:
  enum CommEvent : int {
    kEvReceive = 2,   ///< Bytes have arrived.
    kEvLineLost = 3,  ///< The device has disappeared. The port is closed already.
  };

  virtual ~SerialControl() = default;

  /// Sets the port number, which starts at 1. Returns false and changes nothing if the number is below 1 or
  /// the port is open.
  virtual bool SetCommPort(std::int16_t number) = 0;
  virtual std::int16_t CommPort() const = 0;

  /// Sets the line parameters: speed, parity (n, e, o, m, s), data bits and stop bits, for example
  /// "115200,n,8,1". The text is stored unchanged. Parameters that the system rejects make Open fail. While
  /// the port is open, new parameters take effect immediately.
  virtual void SetSettings(const std::string& settings) = 0;
  virtual std::string Settings() const = 0;

  /// Sets the flow control: 0 none, 1 XON/XOFF, 2 RTS/CTS, 3 both.
  virtual void SetHandshaking(std::int32_t handshaking) = 0;
  virtual std::int32_t Handshaking() const = 0;

  /// Opens the port and discards bytes that arrived before. Returns false if the port cannot be opened.
  virtual bool Open() = 0;
  /// Closes the port and drops unsent bytes. To send them first, wait until OutBufferCount is 0.
  virtual void Close() = 0;
  virtual bool PortOpen() const = 0;

  /// Removes all received bytes from the buffer and returns them.
  virtual std::string Input() = 0;
  virtual void DiscardInput() = 0;

  /// Queues bytes to send. Returns false and drops them if the port is closed or the queue is full.
  virtual bool Output(std::string_view bytes) = 0;
  /// The number of unsent bytes, including those in the system's own queue. 0 if the port is closed.
  virtual std::int32_t OutBufferCount() const = 0;
  /// Drops all unsent bytes.
  virtual void DiscardOutput() = 0;

  /// The system's name of the device that belongs to the port number, for example "/dev/ttyUSB0".
  virtual std::string DeviceName() const = 0;

  /// Called when bytes have arrived or the device has disappeared.
  std::function<void(CommEvent)> onComm;
};

/// The state of a serial device, as far as the program can find out without opening the device.
enum class PortState {
  Absent,
  Usable,  ///< Another program may still be using the device. Only opening it shows that.
  NoPermission,
};

struct PortInfo {
  PortState state = PortState::Absent;
  std::string description;  ///< The device's own description. Empty if the device has none.
  std::string group;        ///< With NoPermission: the group that may use the device. Empty if no group may.
};

/// Information from the system about its serial devices. No function opens a device: opening changes the
/// control lines and could disturb a modem that another program is using.
class SerialPorts {
 public:
  virtual ~SerialPorts() = default;
  /// The names of the devices that the system lists, without pseudo terminals and symbolic links.
  virtual std::vector<std::string> Devices() const = 0;
  /// Returns the state of a device. The device need not be in the list.
  virtual PortInfo Probe(const std::string& device) const = 0;
};

/// The TCP connection, with the functions that the link uses. After a failure the state is kError until Close
/// is called. Events arrive as posted tasks, never during a call.
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

  /// Starts to connect. Returns false if connecting cannot start: the host name is empty, the port is not
  /// within 1 to 65535, or the state is not kClosed.
  virtual bool Connect(const std::string& host, std::int32_t port) = 0;
  /// Closes the connection; the state is immediately kClosed. Bytes sent before are still delivered.
  virtual void Close() = 0;

  /// Queues bytes to send. Drops them if the state is not kConnected or the queue is full.
  virtual void SendData(std::string_view bytes) = 0;
  /// Removes all received bytes from the buffer and returns them.
  virtual std::string GetData() = 0;

  virtual std::string RemoteHost() const = 0;
  virtual std::int32_t RemotePort() const = 0;
  virtual std::string LocalAddress() const = 0;

  /// Called when received bytes are waiting.
  std::function<void()> onDataArrival;
  /// Called when the peer has closed the connection. Bytes received before the close are announced first.
  std::function<void()> onClose;
};

}  // namespace corvex
