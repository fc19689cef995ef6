#include "link/WireLog.h"

#include <gtest/gtest.h>

#include "link/modComSock.h"
#include "support/FakePlatform.h"

namespace corvex {
namespace {

// More tests are in tests/data/streams/wire-log.txt and tests/data/routes.
TEST(WireLog, HoldsOnlyWhatHasLeftThePort) {
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
  EXPECT_EQ(p.folder.Read("wire-20060331-100000.log"),
            "# corvex wire log 1\n"
            "= 0.000 open serial COM1 fake1 2400,n,8,1\n"
            "< 0.020 \"early\"\n"
            "> 0.042 \"0123456789\"\n"
            "< 0.050 \"answer\"\n"
            "> 0.138 \"all of it\"\n"
            "> 1.100 \"half \"\n"
            "= 1.100 5 bytes not sent\n"
            "= 1.153 close\n"
            "= 1.153 open serial COM1 fake1 2400,n,8,1\n"
            "= 1.253 4 bytes not sent\n"
            "= 1.253 line lost\n"
            "= 1.353 open serial COM1 fake1 2400,n,8,1\n"
            "= 1.353 10 bytes not sent\n");
}

}  // namespace
}  // namespace corvex
