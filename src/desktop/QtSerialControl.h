#pragma once

#include <QObject>
#include <QSerialPort>
#include <functional>
#include <string>

#include "desktop/TransportEvents.h"
#include "platform/Transports.h"

namespace corvex {

/// The serial port on QSerialPort.
///
/// Handshaking 3, both kinds at once, is done as 2, RTS/CTS: Qt has one kind at a time, and of the two that
/// is the one that is sure to lose nothing and to pass every byte.
class QtSerialControl : public QObject, public SerialControl {
 public:
  /// `deviceName` gives the system's name of the device behind a port number.
  QtSerialControl(EventLoop& loop, std::function<std::string(int)> deviceName);
  ~QtSerialControl() override;

  bool SetCommPort(std::int16_t number) override;
  std::int16_t CommPort() const override { return number_; }
  void SetSettings(const std::string& settings) override;
  std::string Settings() const override { return settings_; }
  void SetHandshaking(std::int32_t handshaking) override;
  std::int32_t Handshaking() const override { return handshaking_; }
  bool Open() override;
  void Close() override;
  bool PortOpen() const override { return open_; }
  std::string Input() override;
  void DiscardInput() override;
  void Output(std::string_view bytes) override;
  std::int32_t OutBufferCount() const override;
  /// Takes back what the system has not sent yet, too.
  void DiscardOutput() override;
  std::string DeviceName() const override { return deviceName_(number_); }

 private:
  bool ApplySettings();
  void ApplyHandshaking();
  void Announce();
  void Failed(QSerialPort::SerialPortError error);

  std::function<std::string(int)> deviceName_;
  TransportEvents events_;
  QSerialPort port_;
  bool open_ = false;
  std::int16_t number_ = 1;
  std::string settings_ = "9600,n,8,1";
  std::int32_t handshaking_ = 0;
  std::string lastWords_;  ///< Bytes that had come before the device went.
};

}  // namespace corvex
