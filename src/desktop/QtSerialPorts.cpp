#include "desktop/QtSerialPorts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSerialPortInfo>

#include "desktop/QtText.h"

namespace corvex {

#if defined(Q_OS_LINUX)

namespace {

constexpr int kMostParents = 8;

QByteArray ReadLine(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readLine(256).trimmed() : QByteArray();
}

/// Whether there is hardware behind an entry of the kernel's list: consoles have none, nor have the numbers
/// that are kept free for ports on the main board, whose type is 0.
bool IsReal(const QString& entry) {
  return QFileInfo::exists(entry + QStringLiteral("/device")) &&
         ReadLine(entry + QStringLiteral("/type")) != "0";
}

/// What the adapter calls itself, which stands some folders above its terminal.
std::string Product(const QString& entry) {
  QString folder = QFileInfo(entry + QStringLiteral("/device")).canonicalFilePath();
  for (int i = 0; i < kMostParents && folder.size() > 1; ++i, folder = QFileInfo(folder).path()) {
    const QByteArray product = ReadLine(folder + QStringLiteral("/product"));
    if (!product.isEmpty()) return FromQt(QString::fromUtf8(product));
  }
  return {};
}

}  // namespace

std::vector<std::string> QtSerialPorts::Devices() const {
  std::vector<std::string> devices;
  const QDir list(list_);
  for (const QString& name : list.entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
    if (IsReal(list.filePath(name))) devices.push_back(FromQt(QStringLiteral("/dev/") + name));
  }
  return devices;
}

PortInfo QtSerialPorts::Probe(const std::string& device) const {
  const QDir dev(QStringLiteral("/dev"));
  const QFileInfo file(QFileInfo(dev.absoluteFilePath(ToQt(device))).canonicalFilePath());
  if (!file.exists() || file.isFile() || file.isDir()) return {};
  // Devices that the list does not have, such as pseudo terminals, count if they are there.
  const QString entry = list_ + u'/' + file.fileName();
  const bool listed = QFileInfo::exists(entry);
  if (listed && !IsReal(entry)) return {};
  PortInfo info{.state = PortState::Usable, .description = listed ? Product(entry) : "", .group = {}};
  if (!file.isReadable() || !file.isWritable()) {
    info.state = PortState::NoPermission;
    // Nobody is to be told to join the system's own group.
    const bool byGroup = file.permission(QFile::ReadGroup | QFile::WriteGroup) && file.groupId() != 0;
    if (byGroup) info.group = FromQt(file.group());
  }
  return info;
}

#else

std::vector<std::string> QtSerialPorts::Devices() const {
  std::vector<std::string> devices;
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
    devices.push_back(FromQt(port.portName()));
  }
  return devices;
}

PortInfo QtSerialPorts::Probe(const std::string& device) const {
  const QString name = ToQt(device);
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
    if (name.compare(port.portName(), Qt::CaseInsensitive) == 0 || name == port.systemLocation()) {
      return {.state = PortState::Usable, .description = FromQt(port.description()), .group = {}};
    }
  }
  return {};
}

#endif

}  // namespace corvex
