#pragma once

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "desktop/Places.h"
#include "desktop/QtDialogs.h"
#include "desktop/QtEventLoop.h"
#include "desktop/QtPrinters.h"
#include "desktop/QtShell.h"
#include "desktop/QtSocketControl.h"
#include "desktop/QtSound.h"
#include "desktop/QtWindowSystem.h"
#include "desktop/SystemFiles.h"
#include "ports/AsioSerialControl.h"
#include "ports/SystemSerialPorts.h"
#include "session/frmTerm.h"
#include "settings/INIFuncs.h"
#include "support/FakePlatform.h"
#include "support/ShownForms.h"

namespace corvex::bench {

/// A modem at the end of a LAN connection. It is a server in the program's own thread, so its work is part of
/// what is measured. Answers each line, except those that `reply` answers, as in the probe.
class Modem : public QObject {
 public:
  Modem() {
    server_.listen(QHostAddress::LocalHost);
    connect(&server_, &QTcpServer::newConnection, this, [this] {
      peer_ = server_.nextPendingConnection();
      heard_.clear();
      connect(peer_, &QTcpSocket::readyRead, this, [this] { Hear(); });
    });
  }
  int port() const { return server_.serverPort(); }
  void Send(const std::string& bytes) { peer_->write(bytes.data(), static_cast<qint64>(bytes.size())); }

  /// Returns the reply to a line. An empty reply stands for that of the probe.
  std::function<std::string(std::string_view line)> reply;

 private:
  void Hear() {
    heard_ += peer_->readAll().toStdString();
    for (std::size_t end; (end = heard_.find("\r\n")) != std::string::npos; heard_.erase(0, end + 2)) {
      const std::string own = reply ? reply(std::string_view(heard_).substr(0, end)) : std::string();
      Send(own.empty() ? "\r\n204417\r\nPROTOCOL OK\r\n" : own);
    }
  }

  QTcpServer server_;
  QTcpSocket* peer_ = nullptr;
  std::string heard_;
};

/// Measures how long a click can wait: the longest time between two turns of the event loop, seen by a timer
/// that is always due.
class Turns {
 public:
  /// `each` is called in each turn.
  explicit Turns(std::function<void()> each) {
    QObject::connect(&timer_, &QTimer::timeout, [this, each = std::move(each)] {
      longest_ = std::max(longest_, sinceTurn_.nsecsElapsed());
      sinceTurn_.restart();
      each();
    });
  }
  void Start() {
    longest_ = 0;
    sinceTurn_.start();
    timer_.start(0);
  }
  double LongestMs() const { return static_cast<double>(longest_) / 1e6; }

 private:
  QTimer timer_;
  QElapsedTimer sinceTurn_;
  qint64 longest_ = 0;
};

/// A new folder for the program's files, removed at the end.
class Folder {
 public:
  explicit Folder(const char* name) : path_(std::filesystem::temp_directory_path() / name) {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::string Path(const std::string& file = {}) const { return (path_ / file).string(); }

 private:
  std::filesystem::path path_;
};

using Windows = test::WindowsWithForms<QtWindowSystem>;

/// The program with its windows, connected to the modem. Dialogs answer themselves.
struct QtProgram {
  QtProgram(const Modem& modem, const char* folderName) : folder(folderName) {
    settings.config.lan.Set(true);
    settings.config.lanaddress.Set("127.0.0.1");
    settings.config.lanport.Set(std::to_string(modem.port()));
  }
  /// Opens the main window, starts a session and runs until the loop ends.
  void Run() {
    loop.After(std::chrono::milliseconds(300), [this] { term.mnuTerminal.click(); });
    loop.Enter([this] { term.Load(); });
    loop.Exec();
  }

  Folder folder;
  QtEventLoop loop;
  SystemFiles files;
  SettingsStore settings{folder.Path(), files};
  Windows windows{loop};
  AsioSerialControl comPort{loop, [](int) { return std::string("none"); }};
  SystemSerialPorts serialPorts;
  QtSocketControl sock{loop};
  test::FakeDialogs dialogs;
  QtDialogs printerDialogs{loop, windows};
  QtPrinters printers{windows, printerDialogs};
  QtSound sound;
  QtShell shell;
  frmTerm term{Platform{loop, windows, comPort, serialPorts, sock, dialogs, printers, sound, shell, LongDate},
               settings};
};

}  // namespace corvex::bench
