#include <QApplication>

#include "common/INIFuncs.h"
#include "desktop/Icons.h"
#include "desktop/Places.h"
#include "desktop/QtDialogs.h"
#include "desktop/QtEventLoop.h"
#include "desktop/QtPrinters.h"
#include "desktop/QtSerialControl.h"
#include "desktop/QtSocketControl.h"
#include "desktop/QtSound.h"
#include "desktop/QtWindowSystem.h"
#include "desktop/Theme.h"
#include "link/modCommSupport.h"
#include "session/frmTerm.h"

int main(int argc, char** argv) {
  using namespace corvex;
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(
      false);  // the main window ends the program when it has said goodbye
  ApplyTheme(application);
  QApplication::setWindowIcon(PictureIcon("logo"));

  QtEventLoop loop;
  SettingsStore settings(FindAppFolder());
  QtWindowSystem windows(loop);
  QtSerialControl comPort(loop, [&settings](int number) { return ComDeviceName(settings, number); });
  QtSocketControl sock(loop);
  QtDialogs dialogs(loop, windows);
  QtPrinters printers;
  QtSound sound;

  frmTerm term(Platform{.loop = loop,
                        .windows = windows,
                        .comPort = comPort,
                        .sock = sock,
                        .dialogs = dialogs,
                        .printers = printers,
                        .sound = sound,
                        .longDate = LongDate},
               settings);
  loop.Enter([&term] { term.Load(); });
  return loop.Exec();
}
