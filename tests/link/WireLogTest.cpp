#include "link/WireLog.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "link/modComSock.h"
#include "support/Program.h"
#include "unit/WireLog.h"

#ifdef __unix__
#include <sys/resource.h>

#include <csignal>
#endif

namespace corvex {
namespace {

using test::Program;
using test::Responder;

std::vector<std::filesystem::path> Recordings(const Program& p) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(p.folder.Path())) {
    if (entry.path().extension() == ".log") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// What a recording holds is shown by those in tests/data/routes.
TEST(WireLog, GoesOnInItsFileWhenALostLineIsBack) {
  Program p;
  p.settings.logging.wirelog.Set(true);
  Responder modem(p.comPort, test::HeronModem());
  p.Start(3);
  p.comPort.Vanish();
  p.comPort.available = true;
  p.loop.Run(20);
  ASSERT_EQ(Recordings(p).size(), 1u);
  const std::string text = p.folder.Read(Recordings(p)[0].filename().string());
  EXPECT_NE(text.find(" open ", text.find(" line lost\n")), std::string::npos) << text;
}

TEST(WireLog, HoldsWhatHasLeftAndNotWhatNeverDid) {
  using namespace std::chrono_literals;
  test::FakePlatform p;
  p.settings.logging.wirelog.Set(true);
  p.comPort.SetSettings("2400,n,8,1");
  ReceiveBuffer received(p.loop);
  MainState main;
  {
    TerminalLink link(p.platform, p.settings, received, main);
    ASSERT_TRUE(link.EnsureLinkOpen());
    link.WriteText("0123456789");
    p.loop.After(20ms, [&] { p.comPort.Arrive("early"); });
    p.loop.After(50ms, [&] { p.comPort.Arrive("answer"); });
    p.loop.Run(0.1);

    link.WriteText("all of it");
    link.WriteText("half of it");
    p.loop.After(60ms, [&] { p.comPort.Hold(true); });
    link.CloseLink();

    ASSERT_TRUE(link.EnsureLinkOpen());
    link.WriteText("held");
    p.loop.Run(0.1);
    p.comPort.Vanish();
    p.comPort.available = true;
    p.loop.Run(0.1);
    ASSERT_TRUE(link.EnsureLinkOpen());
    link.WriteText("at the end");
  }
  ASSERT_EQ(p.comPort.sent, "0123456789all of ithalf ");
  std::string text;
  for (const auto& entry : std::filesystem::directory_iterator(p.folder.Path())) {
    if (entry.path().extension() == ".log") text = p.folder.Read(entry.path().filename().string());
  }
  EXPECT_EQ(text,
            "# corvex wire log 1\n"
            "= 0.000 open serial COM1 fake1 2400,n,8,1\n"
            "< 0.020 \"early\"\n"
            "> 0.042 \"0123456789\"\n"
            "< 0.050 \"answer\"\n"
            "> 0.138 \"all of it\"\n"
            "> 1.100 \"half \"\n"
            "= 1.100 5 bytes never left\n"
            "= 1.153 close\n"
            "= 1.153 open serial COM1 fake1 2400,n,8,1\n"
            "= 1.253 4 bytes never left\n"
            "= 1.253 line lost\n"
            "= 1.353 open serial COM1 fake1 2400,n,8,1\n"
            "= 1.353 10 bytes never left\n");
}

TEST(WireLog, KeepsTheLastTen) {
  Program p;
  p.settings.logging.wirelog.Set(true);
  for (int i = 10; i < 22; ++i) {
    p.folder.Write("wire-200601" + std::to_string(i) + "-120000.log", "old");
  }
  p.Start(1);
  const auto files = Recordings(p);
  ASSERT_EQ(files.size(), 10u);
  EXPECT_EQ(files.front().filename(), "wire-20060113-120000.log");
  EXPECT_TRUE(files.back().filename().string().starts_with("wire-20060331"));
}

TEST(WireLog, LeavesTheRecordingsOfOthersAlone) {
  Program p;
  p.settings.logging.wirelog.Set(true);
  const std::string own = "wire-20060101-120000.log";
  for (const char* name :
       {"wire-20060102-120000-2.log", "wire-fault on monday.log", "wire-2006010-120000x.log"})
    p.folder.Write(name, "old");
  p.folder.Write(own, "old");
  for (int i = 10; i < 20; ++i) p.folder.Write("wire-200602" + std::to_string(i) + "-120000.log", "old");
  p.Start(1);
  EXPECT_EQ(Recordings(p).size(), 13u);
  EXPECT_FALSE(std::filesystem::exists(p.folder.Path() / own));

  // A second copy of the program has its own.
  test::FakePlatform second;
  SettingsStore settings(p.folder.Name(), second.files, 2);
  WireLog log(second.loop, settings);
  log.Opened("lan");
  EXPECT_EQ(p.folder.Read("wire-20060331-100000-2.log"), "# corvex wire log 1\n= 0.000 open lan\n");
  EXPECT_EQ(Recordings(p).size(), 14u);
}

#ifdef __unix__
TEST(WireLog, AFullDiskCostsNoKeptRecordingAndTheNewOneGoesOnAfterwards) {
  Program p;
  p.settings.logging.wirelog.Set(true);
  for (int i = 10; i < 20; ++i) p.folder.Write("wire-200601" + std::to_string(i) + "-120000.log", "old");
  Responder modem(p.comPort, test::HeronModem());
  rlimit normal{};
  getrlimit(RLIMIT_FSIZE, &normal);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);  // a write then fails, as on a full disk
  const auto setRoom = [&](rlim_t bytes) {
    const rlimit room{std::min(bytes, normal.rlim_max), normal.rlim_max};
    setrlimit(RLIMIT_FSIZE, &room);
  };
  const auto reconnect = [&] {
    p.comPort.Vanish();
    p.comPort.available = true;
    p.loop.Run(30);
  };
  setRoom(10);
  p.Start(3);
  for (int i = 0; i < 3; ++i) {
    reconnect();
    p.loop.Run(2);
  }
  const auto atFull = Recordings(p);
  setRoom(normal.rlim_cur);
  p.comPort.Arrive("one");
  p.loop.Run(1);
  const std::string name = "wire-20060331-100000.log";
  const std::string first = p.folder.Read(name);
  setRoom(first.size() + 30);  // half a line has room
  reconnect();
  const std::string torn = p.folder.Read(name);
  setRoom(normal.rlim_cur);
  std::signal(SIGXFSZ, handler);
  p.comPort.Arrive("two");
  p.loop.Run(1);

  EXPECT_EQ(atFull.size(), 11u);
  EXPECT_EQ(atFull.front().filename(), "wire-20060110-120000.log");
  EXPECT_EQ(Recordings(p).size(), 10u);
  EXPECT_EQ(first.substr(first.size() - 6), "\"one\"\n") << first;
  EXPECT_TRUE(torn.starts_with(first) && torn.ends_with('\n')) << torn;
  const auto events = simulation::ParseWireLog(p.folder.Read(name));
  const auto* recorded = std::get_if<std::vector<simulation::WireEvent>>(&events);
  ASSERT_NE(recorded, nullptr) << p.folder.Read(name);
  EXPECT_EQ(recorded->front().kind, simulation::WireEvent::Kind::Open);
  EXPECT_EQ(recorded->back().bytes, "two");
}
#endif

TEST(WireLog, NeverHoldsThePasswordHoweverItsEchoIsCut) {
  Program p;
  p.settings.logging.wirelog.Set(true);
  p.settings.config.lan.Set(true);
  p.settings.config.erbaccess.Set(true);
  p.settings.config.password.Set(std::string("secret"));
  p.sock.onOpened = [&] { p.sock.Arrive("Password:"); };
  p.sock.onSent = [&](std::string_view bytes) {
    if (bytes != "secret\r\n") return;
    p.sock.Arrive("sec");
    p.loop.After(std::chrono::milliseconds(250), [&] { p.sock.Arrive("ret\r\nwelcome\r\n"); });
    p.loop.After(std::chrono::milliseconds(500), [&] { p.sock.Arrive("ERB> connected to modem"); });
  };
  p.Start(4);
  ASSERT_EQ(Recordings(p).size(), 1u);
  const std::string text = p.folder.Read(Recordings(p)[0].filename().string());
  EXPECT_EQ(text.find("sec"), std::string::npos) << text;
  EXPECT_NE(text.find("\"(password)\\r\\n\""), std::string::npos) << text;
  EXPECT_NE(text.find("\"******\\r\\nwelcome\\r\\n"), std::string::npos) << text;
}

TEST(WireLog, AFolderThatCannotBeWrittenEndsItInSilence) {
  Program p;
  p.settings.logging.wirelog.Set(true);
  // The settings stay readable while the recording's own name is taken by a folder.
  std::filesystem::create_directory(p.folder.Path() / "wire-20060331-100000.log");
  Responder modem(p.comPort, test::HeronModem());
  p.Start(3);
  EXPECT_EQ(p.term.main().mode, ModemMode::Terminal);
  EXPECT_TRUE(std::filesystem::is_directory(p.folder.Path() / "wire-20060331-100000.log"));
}

}  // namespace
}  // namespace corvex
