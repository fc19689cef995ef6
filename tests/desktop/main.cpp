#include <gtest/gtest.h>

#include <QApplication>
#include <string_view>

#include "desktop/look/Theme.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // The build lists the tests, and that must work without a display.
  if (::testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  const auto isSet = [](const char* name) { return !qEnvironmentVariableIsEmpty(name); };
  if (!isSet("QT_QPA_PLATFORM") && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  corvex::ApplyTheme(application);
  return RUN_ALL_TESTS();
}
