#include <QApplication>
#include <QFile>
#include <csignal>
#include <cstdlib>

#include "common/INIFuncs.h"
#include "desktop/Icons.h"
#include "desktop/Places.h"
#include "desktop/QtDialogs.h"
#include "desktop/QtDspLibrary.h"
#include "desktop/QtEventLoop.h"
#include "desktop/QtPrinters.h"
#include "desktop/QtShell.h"
#include "desktop/QtSocketControl.h"
#include "desktop/QtSound.h"
#include "desktop/QtWindowSystem.h"
#include "desktop/Theme.h"
#include "link/modCommSupport.h"
#include "ports/AsioSerialControl.h"
#include "ports/SystemSerialPorts.h"
#include "session/frmTerm.h"

namespace {

int Run(QApplication& application) {
  using namespace corvex;
  // The main window ends the program when it has said goodbye, not the last window to be hidden.
  QApplication::setQuitOnLastWindowClosed(false);
  ApplyTheme(application);
  QApplication::setWindowIcon(PictureIcon("logo"));

  QtEventLoop loop;
  SettingsStore settings(FindAppFolder());
  QtWindowSystem windows(loop);
  AsioSerialControl comPort(loop, [&settings](int number) { return ComDeviceName(settings, number); });
  SystemSerialPorts serialPorts;
  QtSocketControl sock(loop);
  QtDialogs dialogs(loop, windows);
  QtPrinters printers(windows, dialogs);
  QtSound sound;
  QtShell shell;
  QtDspLibrary dspLibrary(
      {QApplication::applicationDirPath(), QFile::decodeName(settings.AppFolder().c_str())});

  frmTerm term(Platform{.loop = loop,
                        .windows = windows,
                        .comPort = comPort,
                        .serialPorts = serialPorts,
                        .sock = sock,
                        .dialogs = dialogs,
                        .printers = printers,
                        .sound = sound,
                        .shell = shell,
                        .longDate = LongDate,
                        .dspMsg = [&dspLibrary](const std::int16_t* n) { dspLibrary.DspMsg(n); }},
               settings);
  loop.Enter([&term] { term.Load(); });
  return loop.Exec();
}

}  // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);  // a log at the system's limit of a file's size fails, and the program lives
#endif
  QApplication application(argc, argv);
  const int status = Run(application);
  // All of ours is gone. Qt's own end would wait for a host name that is still being looked up, many seconds
  // at times.
  std::_Exit(status);
}
