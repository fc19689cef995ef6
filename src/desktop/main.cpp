#include <QApplication>
#include <cstdlib>

#include "common/INIFuncs.h"
#include "desktop/Icons.h"
#include "desktop/Places.h"
#include "desktop/QtDialogs.h"
#include "desktop/QtEventLoop.h"
#include "desktop/QtPrinters.h"
#include "desktop/QtSerialControl.h"
#include "desktop/QtSerialPorts.h"
#include "desktop/QtSocketControl.h"
#include "desktop/QtSound.h"
#include "desktop/QtWindowSystem.h"
#include "desktop/Theme.h"
#include "link/modCommSupport.h"
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
  QtSerialControl comPort(loop, [&settings](int number) { return ComDeviceName(settings, number); });
  QtSerialPorts serialPorts;
  QtSocketControl sock(loop);
  QtDialogs dialogs(loop, windows);
  QtPrinters printers(windows);
  QtSound sound;

  frmTerm term(Platform{.loop = loop,
                        .windows = windows,
                        .comPort = comPort,
                        .serialPorts = serialPorts,
                        .sock = sock,
                        .dialogs = dialogs,
                        .printers = printers,
                        .sound = sound,
                        .longDate = LongDate},
               settings);
  loop.Enter([&term] { term.Load(); });
  return loop.Exec();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const int status = Run(application);
  // All of ours is gone. Qt's own end would wait for a host name that is still being looked up, many seconds
  // at times.
  std::_Exit(status);
}
