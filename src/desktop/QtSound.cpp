#include "desktop/QtSound.h"

#include <QApplication>

namespace corvex {

void QtSound::Beep(double, int) {
  QApplication::beep();
}

}  // namespace corvex
