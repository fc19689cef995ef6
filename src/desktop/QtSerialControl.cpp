#include "desktop/QtSerialControl.h"

#include <QFileInfo>
#include <algorithm>
#include <optional>

#include "common/Text.h"
#include "desktop/QtText.h"

namespace corvex {

namespace {

// Nearly six seconds at 115,200 bit/s; what comes beyond it waits in the system.
constexpr qint64 kReadBuffer = 64 * 1024;
// A line that takes nothing must not let the queue grow for ever.
constexpr qint64 kWriteBuffer = 1024 * 1024;

struct LineParameters {
  qint32 speed;
  QSerialPort::Parity parity;
  QSerialPort::DataBits dataBits;
  QSerialPort::StopBits stopBits;
};

std::optional<LineParameters> ParseLineParameters(std::string_view text) {
  const auto fields = Split(text, ',');
  if (fields.size() != 4 || TrimBlanks(fields[1]).size() != 1) return {};
  const auto speed = ToInt32(fields[0]);
  const auto dataBits = ToInt16(fields[2]);
  if (!speed || *speed <= 0 || !dataBits || *dataBits < 5 || *dataBits > 8) return {};

  LineParameters parameters{*speed, QSerialPort::NoParity, static_cast<QSerialPort::DataBits>(*dataBits),
                            QSerialPort::OneStop};
  switch (UpperCase(TrimBlanks(fields[1]).front())) {
    case 'N':
      break;
    case 'E':
      parameters.parity = QSerialPort::EvenParity;
      break;
    case 'O':
      parameters.parity = QSerialPort::OddParity;
      break;
    case 'M':
      parameters.parity = QSerialPort::MarkParity;
      break;
    case 'S':
      parameters.parity = QSerialPort::SpaceParity;
      break;
    default:
      return {};
  }
  const std::string_view stopBits = TrimBlanks(fields[3]);
  if (stopBits == "1.5") {
    parameters.stopBits = QSerialPort::OneAndHalfStop;
  } else if (stopBits == "2") {
    parameters.stopBits = QSerialPort::TwoStop;
  } else if (stopBits != "1") {
    return {};
  }
  return parameters;
}

/// Links resolved: the lock of an open port is kept under its name, so under two names it could be opened
/// twice.
QString ResolveLinks(const std::string& device) {
  const QString target = QFileInfo(ToQt(device)).canonicalFilePath();
  return target.isEmpty() ? ToQt(device) : target;
}

}  // namespace

QtSerialControl::QtSerialControl(EventLoop& loop, std::function<std::string(int)> deviceName)
    : deviceName_(std::move(deviceName)), events_(loop), port_(this) {
  port_.setReadBufferSize(kReadBuffer);
  connect(&port_, &QSerialPort::readyRead, this, &QtSerialControl::Announce);
  connect(&port_, &QSerialPort::errorOccurred, this, &QtSerialControl::Failed);
}

QtSerialControl::~QtSerialControl() {
  // What cannot leave any more, on a line held by its flow control, would hold up the closing for many
  // seconds.
  if (open_) DiscardOutput();
  Close();
}

bool QtSerialControl::SetCommPort(std::int16_t number) {
  if (open_ || number < 1) return false;
  number_ = number;
  return true;
}

void QtSerialControl::SetSettings(const std::string& settings) {
  settings_ = settings;
  if (open_) ApplySettings();
}

bool QtSerialControl::ApplySettings() {
  const auto parameters = ParseLineParameters(settings_);
  // All four, whatever one of them does.
  return parameters && static_cast<int>(port_.setBaudRate(parameters->speed)) &
                           static_cast<int>(port_.setParity(parameters->parity)) &
                           static_cast<int>(port_.setDataBits(parameters->dataBits)) &
                           static_cast<int>(port_.setStopBits(parameters->stopBits));
}

void QtSerialControl::SetHandshaking(std::int32_t handshaking) {
  handshaking_ = handshaking;
  if (open_) ApplyHandshaking();
}

void QtSerialControl::ApplyHandshaking() {
  const bool rtsCts = handshaking_ == 2 || handshaking_ == 3;
  port_.setFlowControl(rtsCts              ? QSerialPort::HardwareControl
                       : handshaking_ == 1 ? QSerialPort::SoftwareControl
                                           : QSerialPort::NoFlowControl);
  if (port_.isOpen() && !rtsCts) port_.setRequestToSend(true);
}

bool QtSerialControl::Open() {
  if (open_) return true;
  events_.Cut();
  lastWords_.clear();
  port_.setPortName(ResolveLinks(DeviceName()));
  // Before the opening, so that the line never runs with other parameters than these.
  if (!ApplySettings()) return false;
  ApplyHandshaking();
  if (!port_.open(QIODevice::ReadWrite)) return false;
  // Units that are only powered or only speak with these lines up; on some systems nobody else raises them.
  port_.setDataTerminalReady(true);
  ApplyHandshaking();
  port_.clear(QSerialPort::Input);
  port_.clearError();
  open_ = true;
  return true;
}

void QtSerialControl::Close() {
  open_ = false;  // first: closing signals errors that are none
  events_.Cut();
  lastWords_.clear();
  if (port_.isOpen()) port_.close();
}

std::string QtSerialControl::Input() {
  std::string bytes = std::exchange(lastWords_, {});
  if (open_) bytes += port_.readAll().toStdString();
  return bytes;
}

void QtSerialControl::DiscardInput() {
  lastWords_.clear();
  if (!open_) return;
  port_.clear(QSerialPort::Input);
  port_.readAll();  // wakes a reader that had stopped at a full buffer
}

void QtSerialControl::Output(std::string_view bytes) {
  if (!open_ || bytes.empty() || port_.bytesToWrite() + static_cast<qint64>(bytes.size()) > kWriteBuffer) {
    return;
  }
  port_.write(bytes.data(), static_cast<qint64>(bytes.size()));
}

std::int32_t QtSerialControl::OutBufferCount() const {
  return open_ ? static_cast<std::int32_t>(port_.bytesToWrite()) : 0;
}

void QtSerialControl::DiscardOutput() {
  if (open_) port_.clear(QSerialPort::Output);
}

void QtSerialControl::Announce() {
  if (!open_) return;
  events_.PostArrival(
      [this] {
        if (onComm) onComm(kEvReceive);
      },
      [this] { return port_.bytesAvailable() >= kReadBuffer; });
}

void QtSerialControl::Failed(QSerialPort::SerialPortError error) {
  switch (error) {
    case QSerialPort::NoError:
    case QSerialPort::TimeoutError:
    case QSerialPort::UnsupportedOperationError:  // a line or a parameter that the device does not have
      return;
    default:
      break;
  }
  if (!open_) return;
  // The device has gone. It would signal without end, and keep a core busy, if the port stayed open.
  open_ = false;
  lastWords_ = port_.readAll().toStdString();
  port_.close();
  if (!lastWords_.empty()) {
    events_.Post([this] {
      if (onComm) onComm(kEvReceive);
    });
  }
  events_.Post([this] {
    if (onComm) onComm(kEvLineLost);
  });
}

}  // namespace corvex
