#pragma once

#include <gtest/gtest.h>

#include <QTest>

#include "desktop/QtWindowSystem.h"
#include "desktop/Wait.h"
#include "desktop/views/FormWindow.h"

namespace corvex::test {

/// The base of tests that show one form on the screen.
class ShownFormTest : public ::testing::Test {
 protected:
  /// Shows the form and waits until its window is exposed.
  void Show(Form& form) {
    form.visible = true;
    EXPECT_TRUE(Becomes(loop, [&] { return windows.WindowOf(form)->isVisible(); }));
    EXPECT_TRUE(QTest::qWaitForWindowExposed(windows.WindowOf(form)));
    activates = QTest::qWaitForWindowActive(windows.WindowOf(form), 2000);
  }
  void Turn() { Elapse(loop, std::chrono::milliseconds(20)); }

  QtEventLoop loop;
  QtWindowSystem windows{loop};
  /// Whether the window has become active. Always false on a display without a window manager.
  bool activates = false;
};

#define NEEDS_ACTIVE_WINDOW() \
  if (!activates) GTEST_SKIP() << "the window did not become active: there is no window manager"

}  // namespace corvex::test
