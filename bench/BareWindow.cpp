#include <QApplication>
#include <QWidget>

/// A window with nothing in it: what the start and the memory of the program are compared with.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(590, 260);
  window.show();
  return QApplication::exec();
}
