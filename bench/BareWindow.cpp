#include <QApplication>
#include <QWidget>

/// An empty window. The program's start time and memory are compared with it.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(590, 260);
  window.show();
  return QApplication::exec();
}
