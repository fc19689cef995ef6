#include <QApplication>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>

#include "Traffic.h"
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

// Measures how long a click can wait while the modem sends a megabyte of packets in one burst: the longest
// time between two turns of the event loop, seen by a timer that is always due. The modem is a server in the
// same thread, so its own work is part of the result.

namespace {

using namespace corvex;

/// Answers the probe, then sends only when Send is called.
class Modem : public QObject {
 public:
  Modem() {
    server_.listen(QHostAddress::LocalHost);
    connect(&server_, &QTcpServer::newConnection, this, [this] {
      peer_ = server_.nextPendingConnection();
      connect(peer_, &QTcpSocket::readyRead, this, [this] {
        heard_ += peer_->readAll();
        if (heard_.endsWith("\r\n")) {
          peer_->write("\r\n204417\r\nPROTOCOL OK\r\n");
          heard_.clear();
        }
      });
    });
  }
  int port() const { return server_.serverPort(); }
  void Send(const std::string& bytes) { peer_->write(bytes.data(), static_cast<qint64>(bytes.size())); }

 private:
  QTcpServer server_;
  QTcpSocket* peer_ = nullptr;
  QByteArray heard_;
};

/// Returns at least a megabyte of modem traffic, with a menu, a choice list and a new screen now and then.
std::string Burst() {
  std::string bytes;
  while (bytes.size() < (1u << 20)) {
    bytes += bench::MixedTraffic(16 << 10);
    bytes += "<tml><MenuScreen><Title>Main menu<1>001Call|5<2>002Setup|7<INDEXLINE>2</tml>";
    bytes += "<tml><ChoiceScreen><Title>Language<1>English<2>Norsk<INDEXLINE>1</tml>";
    bytes += "<tml><TextScreen></tml>\x1B[2;2Htext<tml><Paint></tml>";
  }
  return bytes + "<tml><Sig>END</tml>";
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const auto folder = std::filesystem::temp_directory_path() / "corvex-burst-bench";
  std::filesystem::create_directories(folder);
  Modem modem;
  QtEventLoop loop;
  SystemFiles files;
  SettingsStore settings(folder.string(), files);
  settings.config.lan.Set(true);
  settings.config.lanaddress.Set("127.0.0.1");
  settings.config.lanport.Set(std::to_string(modem.port()));
  QtWindowSystem windows(loop);
  AsioSerialControl comPort(loop, [](int) { return std::string("none"); });
  SystemSerialPorts serialPorts;
  QtSocketControl sock(loop);
  QtDialogs dialogs(loop, windows);
  QtPrinters printers(windows, dialogs);
  QtSound sound;
  QtShell shell;
  frmTerm term(Platform{loop, windows, comPort, serialPorts, sock, dialogs, printers, sound, shell, LongDate},
               settings);

  QElapsedTimer sinceTurn;
  QElapsedTimer sinceBurst;
  qint64 longest = 0;
  QTimer turn;
  QObject::connect(&turn, &QTimer::timeout, [&] {
    longest = std::max(longest, sinceTurn.nsecsElapsed());
    sinceTurn.restart();
    if (term.state().sigText == "END") {
      std::printf("1 MB in one burst: shown after %lld ms, longest turn of the event loop %.1f ms\n",
                  static_cast<long long>(sinceBurst.elapsed()), static_cast<double>(longest) / 1e6);
      loop.End();
    }
  });
  loop.After(std::chrono::milliseconds(300), [&] { term.mnuTerminal.click(); });
  loop.After(std::chrono::seconds(3), [&] {
    if (term.main().mode != ModemMode::Terminal) {
      std::printf("no session\n");
      loop.End();
      return;
    }
    const std::string burst = Burst();
    sinceTurn.start();
    sinceBurst.start();
    turn.start(0);
    modem.Send(burst);
  });
  loop.After(std::chrono::seconds(30), [&] {
    std::printf("not shown within 30 s\n");
    loop.End();
  });
  loop.Enter([&] { term.Load(); });
  loop.Exec();
  std::filesystem::remove_all(folder);
  return 0;
}
