#include "desktop/SystemEnd.h"

#include <gtest/gtest.h>

#include <QEvent>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include "desktop/QtDialogs.h"
#include "desktop/QtWindowSystem.h"
#include "desktop/Wait.h"
#include "desktop/views/FormWindow.h"
#include "forms/Controls.h"
#include "support/TempFolder.h"
#include "unit/Unit.h"
#ifdef Q_OS_UNIX
#include <csignal>
#endif

namespace corvex {
namespace {

using namespace std::chrono_literals;
using test::Becomes;

struct Window : Form {
  Window(EventLoop& l, WindowSystem& w) : Form(l, w, "window") {
    rect = Rect{1500, 1500, 4500, 3000};
    queryUnload = [this] { visible = false; };
  }
  ~Window() override { Withdraw(); }
  MenuItem menu{*this, {.name = "menu", .caption = "&Menu"}};
  MenuItem entry{menu, {.name = "entry", .caption = "Entry"}};
};

/// A program that cannot close while a dialog is open, and that asks whether to save before it closes.
class SystemEndTest : public ::testing::Test {
 protected:
  void Close() {
    ++closes;
    if (std::exchange(closing, true)) return;
    if (!busy && MayGo()) loop.End();
    closing = false;
  }
  bool MayGo() {
    Answer answer;
    while ((answer = dialogs.Ask({.text = "Save?", .buttons = Buttons::YesNoCancel})) == Answer::Yes) {
      saves.push_back(dialogs.SaveFile({}).value_or("none"));
      if (saves.size() == savesThatSucceed) return true;
    }
    return answer == Answer::No;
  }

  QtEventLoop loop;
  QtWindowSystem windows{loop};
  QtDialogs dialogs{loop, windows};
  SystemEnd systemEnd{loop,
                      [this] {
                        windows.CallOff();
                        dialogs.StopAsking({"/first", "/second"});
                      },
                      [this] { Close(); }};
  bool busy = false;
  bool closing = false;
  int closes = 0;
  std::size_t savesThatSucceed = 1;
  std::vector<std::string> saves;
};

TEST_F(SystemEndTest, OpenDialogsAndMenusDoNotDelayTheEnd) {
  Window main(loop, windows);
  main.visible = true;
  ASSERT_TRUE(Becomes(loop, [&] { return windows.WindowOf(main)->isVisible(); }));
  std::string log;
  // Each of these waits inside the wait of the previous one.
  auto delay = 0ms;
  const auto open = [&](const char* name, EventLoop::Task task) {
    loop.After(delay += 50ms, [&log, name, task = std::move(task)] {
      task();
      log += name;
    });
  };
  const auto busyWith = [this](auto task) {
    return [this, task] {
      busy = true;
      task();
      busy = false;
    };
  };
  // The outermost wait is the question whether to save.
  open("close ", [this] { Close(); });
  open("box ", busyWith([this] { dialogs.MessageBox("still open"); }));
  open("file ", busyWith([this] { EXPECT_EQ(dialogs.SaveFile({}), std::nullopt); }));
  open("input ", busyWith([this] { EXPECT_EQ(dialogs.InputBox("Name", "Owner"), std::nullopt); }));
  open("form ", busyWith([this] { Window(loop, windows).ShowModal(); }));
  open("menu ", [&] {
    windows.WindowOf(main)->menuBar()->actions().front()->menu()->popup({200, 200});
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  });
  auto began = loop.Now();
  loop.After(delay + 200ms, [&] {
    EXPECT_EQ(log, "menu ");
    began = loop.Now();
    systemEnd.Request();
  });
  loop.Exec();
  EXPECT_LT(loop.Now() - began, 1s);
  EXPECT_TRUE(log.starts_with("menu form input file box ")) << log;
  ASSERT_EQ(saves.size(), 1U);
  EXPECT_TRUE(saves[0].starts_with("/first/printout-") && saves[0].ends_with(".txt")) << saves[0];
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(SystemEndTest, EndNowTriesEachFolderOnceAndReturnsAfterTheEnd) {
  savesThatSucceed = 9;  // a text that cannot be saved anywhere must not block the end
  bool over = false;
  loop.After(10ms, [&] {
    systemEnd.EndNow();
    over = true;
    EXPECT_TRUE(loop.Ended());
  });
  loop.Exec();
  EXPECT_TRUE(over);
  ASSERT_EQ(saves.size(), 2U);
  EXPECT_TRUE(saves[1].starts_with("/second/")) << saves[1];
}

TEST_F(SystemEndTest, AProgramThatDoesNotCloseEndsAfterTheLimit) {
  busy = true;
  const auto began = loop.Now();
  // On some systems the end of the session arrives as a Quit event.
  loop.After(10ms, [&] {
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit);
  });
  loop.Exec();
  EXPECT_GE(closes, 10);
  EXPECT_GE(loop.Now() - began, SystemEnd::kLimit);
  EXPECT_LT(loop.Now() - began, SystemEnd::kLimit + 2s);
}

#ifdef Q_OS_UNIX

// Runs the real program in a separate process, in session with a simulated unit over TCP.
TEST(SystemEndProgramTest, TheFirstOfSeveralSignalsClosesTheProgramAndSavesUnsavedText) {
  QtEventLoop loop;
  QTcpServer server;
  QTcpSocket* line = nullptr;
  simulation::Unit unit{loop, {}, [&](std::string_view bytes) {
                          if (line != nullptr) line->write(bytes.data(), static_cast<qint64>(bytes.size()));
                        }};
  std::string heard;
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
    line = server.nextPendingConnection();
    unit.LineUp();
    QObject::connect(line, &QTcpSocket::readyRead, &server, [&] {
      const std::string bytes = line->readAll().toStdString();
      heard += bytes;
      loop.Enter([&] { unit.Receive(bytes); });
    });
  });
  const test::TempFolder folder;
  const std::string path = (folder.Path() / "corvex").string();
  std::filesystem::copy_file(CORVEX_PROGRAM, path);
  folder.Write("corvex.ini", "[config]\r\nlan=yes\r\nlanaddress=127.0.0.1\r\nlanport=" +
                                 std::to_string(server.serverPort()) + "\r\n");
  QProcess program;  // its destructor kills the program if it still runs
  program.setProcessChannelMode(QProcess::ForwardedChannels);
  program.start(QString::fromStdString(path), QStringList());

  std::size_t said = 0;  // bytes heard so far; the session has started when they stop increasing
  ASSERT_TRUE(Becomes(
      loop,
      [&] {
        test::Elapse(loop, 500ms);
        return std::exchange(said, heard.size()) == heard.size() && unit.InTagMode() && !unit.Shows().empty();
      },
      20))
      << "the session did not start; was the window active?";
  line->write("<tml><StartPrint></tml><tml><Print>000noon report</tml><tml><EndPrint></tml>");
  test::Elapse(loop, 500ms);
  heard.clear();
  for (const int number : {SIGTERM, SIGHUP, SIGINT, SIGTERM}) {
    kill(static_cast<pid_t>(program.processId()), number);
    test::Elapse(loop, 50ms);
  }
  ASSERT_TRUE(Becomes(loop, [&] { return program.state() == QProcess::NotRunning; }));
  EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(program.exitCode(), 0);
  test::Elapse(loop, 50ms);
  EXPECT_TRUE(heard.starts_with("\x18\x18")) << heard;
  std::string saved;
  for (const auto& file : std::filesystem::directory_iterator(folder.Path())) {
    const std::string name = file.path().filename().string();
    if (name.starts_with("printout-") && name.ends_with(".txt")) saved += folder.Read(name);
  }
  EXPECT_NE(saved.find("noon report"), std::string::npos);
}

#endif

}  // namespace
}  // namespace corvex
