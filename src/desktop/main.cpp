#include <QApplication>
#include <QDir>
#include <QFile>
#include <csignal>
#include <cstdlib>
#include <string>

#include "desktop/Places.h"
#include "desktop/QtDialogs.h"
#include "desktop/QtDspLibrary.h"
#include "desktop/QtEventLoop.h"
#include "desktop/QtPrinters.h"
#include "desktop/QtShell.h"
#include "desktop/QtSocketControl.h"
#include "desktop/QtSound.h"
#include "desktop/QtWindowSystem.h"
#include "desktop/SystemEnd.h"
#include "desktop/SystemFiles.h"
#include "desktop/look/Icons.h"
#include "desktop/look/Theme.h"
#include "link/modCommSupport.h"
#include "ports/AsioSerialControl.h"
#include "ports/SystemSerialPorts.h"
#include "session/frmTerm.h"
#include "settings/INIFuncs.h"
#include "settings/SettingsAlarm.h"

namespace {

int Run(QApplication& application) {
  using namespace corvex;
  // The main window ends the program after it has closed the session with the modem. Hiding the last window
  // must not end the program earlier.
  QApplication::setQuitOnLastWindowClosed(false);
  ApplyTheme(application);
  QApplication::setWindowIcon(PictureIcon("logo"));

  QtEventLoop loop;
  const std::string folder = FindAppFolder();
  SystemFiles files;
  const CopyPlace copy(folder);
  SettingsStore settings(folder, files, copy.number());
  if (copy.alone()) settings.TidyUp();
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
  const SettingsAlarm alarm(settings, loop, dialogs);
  const SystemEnd systemEnd(
      loop,
      [&] {
        windows.CallOff();
        dialogs.StopAsking({settings.AppFolder(), QFile::encodeName(QDir::homePath()).toStdString(),
                            QFile::encodeName(QDir::tempPath()).toStdString()});
      },
      [&term] { term.queryUnload(); });
  loop.Enter([&term] { term.Load(); });
  return loop.Exec();
}

}  // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);  // at the system's file size limit a write fails, and the program continues
#endif
  QApplication application(argc, argv);
  const int status = Run(application);
  // All objects of the program are destroyed. Skip Qt's cleanup, which waits for a pending host name lookup,
  // sometimes for many seconds.
  std::_Exit(status);
}
