#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/TransportEvents.h"
#include "platform/Transports.h"
#include "ports/LineSettings.h"

namespace corvex {

/// The serial port, implemented with Asio.
///
/// While the port is open, a separate thread serves it. The thread moves bytes between the device and two
/// bounded queues, and notifies the event loop when bytes have arrived or the device is lost. All other code,
/// including the event handlers, runs on the event loop's thread.
class AsioSerialControl : public SerialControl {
 public:
  /// `deviceName` returns the system's device name for a port number.
  AsioSerialControl(EventLoop& loop, std::function<std::string(int)> deviceName);
  ~AsioSerialControl() override;

  bool SetCommPort(std::int16_t number) override;
  std::int16_t CommPort() const override { return number_; }
  void SetSettings(const std::string& settings) override;
  std::string Settings() const override { return settings_; }
  void SetHandshaking(std::int32_t handshaking) override;
  std::int32_t Handshaking() const override { return handshaking_; }
  bool Open() override;
  void Close() override;
  bool PortOpen() const override { return line_ != nullptr; }
  std::string Input() override;
  void DiscardInput() override;
  bool Output(std::string_view bytes) override;
  std::int32_t OutBufferCount() const override;
  void DiscardOutput() override;
  std::string DeviceName() const override { return deviceName_(number_); }

 private:
  class Line;

  std::optional<LineSettings> Wanted() const;
  void Apply();
  void Announce();
  void Lost();

  EventLoop& loop_;
  std::function<std::string(int)> deviceName_;
  TransportEvents events_;
  std::unique_ptr<Line> line_;  ///< Null while the port is closed.
  std::int16_t number_ = 1;
  std::string settings_ = "9600,n,8,1";
  std::int32_t handshaking_ = 0;
  std::string lastWords_;  ///< Bytes that had arrived before the device was lost.
};

}  // namespace corvex
