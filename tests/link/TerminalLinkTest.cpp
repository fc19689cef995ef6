#include "link/modComSock.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/FakePlatform.h"

namespace corvex {
namespace {

using namespace std::chrono_literals;

/// A link without the rest of the program.
struct LinkTest : ::testing::Test, test::FakePlatform {
  ReceiveBuffer received{loop};
  MainState main;
  TerminalLink link{platform, settings, received, main};

  double Seconds() const { return std::chrono::duration<double>(loop.Now()).count(); }
};

TEST_F(LinkTest, WritesOnAClosedLinkAreDroppedAndOnlyABlockReportsIt) {
  for (const bool lan : {false, true}) {
    settings.config.lan.Set(lan);
    link.WriteText("text");
    link.WriteByte(7);
    EXPECT_TRUE(dialogs.shown.empty());
    link.WriteBlock("block");
    EXPECT_EQ(dialogs.shown, std::vector<std::string>{"Inconsistent state during block write"});
    dialogs.shown.clear();
  }
  EXPECT_EQ(comPort.sent + sock.sent, "");
}

TEST_F(LinkTest, TheSettingChoosesTheTransportAtEachUse) {
  settings.config.lan.Set(true);
  ASSERT_TRUE(link.EnsureLinkOpen());
  ASSERT_TRUE(comPort.Open());
  EXPECT_EQ(sock.RemoteHost(), "192.168.1.1");
  EXPECT_EQ(sock.RemotePort(), 3000);
  EXPECT_EQ(sock.sent, "AT+ERB_TRANSPARENT_MODE\r\n");
  link.WriteText("a");
  settings.config.lan.Set(false);
  link.WriteText("b");
  loop.Run(0.01);
  EXPECT_EQ(sock.sent.back(), 'a');
  EXPECT_EQ(comPort.sent, "b");
  // While the socket is closed a text goes to an open port. A byte does not.
  settings.config.lan.Set(true);
  sock.Close();
  link.WriteText("c");
  link.WriteByte('d');
  loop.Run(0.01);
  EXPECT_EQ(comPort.sent, "bc");
}

TEST_F(LinkTest, AByteWaitsForTheLogin) {
  settings.config.lan.Set(true);
  ASSERT_TRUE(sock.Connect("host", 1));
  loop.Run(0.1);
  ASSERT_EQ(sock.GetState(), SocketControl::kConnected);
  link.WriteByte('x');
  EXPECT_EQ(sock.sent, "");
  link.WriteText("y");  // a text does not wait: the login itself sends texts
  EXPECT_EQ(sock.sent, "y");
}

TEST_F(LinkTest, ClosingTheSerialPortClearsItsBuffersAndHandshaking) {
  comPort.SetHandshaking(2);
  ASSERT_TRUE(link.EnsureLinkOpen());
  comPort.Hold(true);
  link.WriteText("text");
  link.CloseLink();
  EXPECT_NEAR(Seconds(), 1.05, 0.01) << "waits one second for a line that takes nothing";
  EXPECT_FALSE(comPort.PortOpen());
  EXPECT_EQ(comPort.Handshaking(), 0);
  EXPECT_EQ(comPort.OutBufferCount(), 0);
  comPort.Hold(false);
  loop.Run(1);
  EXPECT_EQ(comPort.sent, "");
  const double began = Seconds();
  ASSERT_TRUE(link.EnsureLinkOpen());
  link.CloseLink();
  EXPECT_NEAR(Seconds() - began, 0.05, 0.002) << "without output there is nothing to wait for";
}

TEST_F(LinkTest, AnAbandonedClosePurgesNothing) {
  ASSERT_TRUE(link.EnsureLinkOpen());
  comPort.Hold(true);
  link.WriteText("text");
  loop.After(100ms, [this] { loop.AbandonWaits([] {}); });
  EXPECT_THROW(link.CloseLink(), WaitAbandoned);
  EXPECT_NEAR(Seconds(), 0.1, 0.01);
  EXPECT_TRUE(comPort.PortOpen());
  comPort.Hold(false);
  loop.Run(1);
  EXPECT_EQ(comPort.sent, "text");
}

TEST_F(LinkTest, ALostLineCountsAsASignOfLifeLikeEveryEventOfThePort) {
  ASSERT_TRUE(link.EnsureLinkOpen());
  comPort.Vanish();
  loop.Run(0.1);
  EXPECT_TRUE(main.rxSeen);
}

TEST_F(LinkTest, ADialogueThatStartsInAWaitOfTheDispatcherGetsItsAnswers) {
  main.mode = ModemMode::Terminal;
  ASSERT_TRUE(link.EnsureLinkOpen());
  int calls = 0;
  link.processReceived = [&] {
    received.DiscardRx();
    if (++calls > 1) return;
    main.mode = ModemMode::DeviceManager;
    for (const char* reply : {"one", "two"}) {
      comPort.Arrive(reply);
      Pause(loop, 0.1);
      EXPECT_EQ(received.TakeRx(), reply);
    }
    main.mode = ModemMode::Terminal;
    comPort.Arrive("three");
    Pause(loop, 0.1);
    EXPECT_FALSE(received.RxAvailable());
  };
  comPort.Arrive("first");
  loop.Run(1);
  EXPECT_EQ(calls, 1);
}

TEST_F(LinkTest, AFullReceiveBufferLeavesBytesInTheTransport) {
  main.mode = ModemMode::DeviceManager;
  ASSERT_TRUE(link.EnsureLinkOpen());
  const std::string chunk(1 << 20, 'x');
  for (int i = 0; i < 20; ++i) {
    comPort.Arrive(chunk);
    loop.Run(0.01);
  }
  const std::string first = received.TakeRx();
  EXPECT_EQ(first.size(), ReceiveBuffer::kCapacity);
  loop.Run(0.01);
  EXPECT_EQ(first.size() + received.TakeRx().size(), 20u << 20);
}

TEST_F(LinkTest, ABufferThatWasNeverReadDoesNotSilenceAModeThatDispatches) {
  for (const bool lan : {false, true}) {
    settings.config.lan.Set(lan);
    ASSERT_TRUE(link.EnsureLinkOpen());
    const auto arrive = [&](std::string_view bytes) { lan ? sock.Arrive(bytes) : comPort.Arrive(bytes); };
    std::size_t taken = 0;
    link.processReceived = [&] { taken += received.TakeRx().size(); };
    main.mode = ModemMode::Offline;  // nothing reads the buffer
    arrive(std::string(ReceiveBuffer::kCapacity, 'x'));
    loop.Run(0.01);
    main.mode = ModemMode::AtMode;
    arrive("OK");
    loop.Run(0.01);
    EXPECT_EQ(taken, ReceiveBuffer::kCapacity + 2);
  }
}

TEST_F(LinkTest, ACommandIsSentAgainAfterTheThirdRoundAndGivenUpAfterTheEighth) {
  struct Case {
    const char* reply;
    int afterSends;  // the reply comes after so many sends of the command
    bool expected;
    int sends;
  };
  for (const Case& c : {Case{"\r\nok\r\n", 1, true, 1}, Case{"<tml><Sig>2", 1, true, 1},
                        Case{"<TML>", 1, false, 2},  // case-sensitive
                        Case{"ERROR", 1, false, 2},  // does not end the wait
                        Case{"OK", 2, true, 2}, Case{"", 0, false, 2}}) {
    int sends = 0;
    comPort.sent.clear();
    comPort.onSent = [&](std::string_view bytes) {
      if (bytes == "cmd\r\n" && ++sends == c.afterSends) comPort.Arrive(c.reply);
    };
    const double began = Seconds();
    EXPECT_EQ(link.SendAndAwaitOk("cmd"), c.expected) << c.reply;
    comPort.LetLeave();
    EXPECT_EQ(sends, c.sends) << c.reply;
    EXPECT_EQ(comPort.sent.ends_with('\x12'), c.expected) << c.reply;
    if (!c.expected) {
      EXPECT_NEAR(Seconds() - began, 0.45, 0.07) << c.reply;
    }
  }
}

TEST_F(LinkTest, ABlockWaitsUntilAllOutputHasLeft) {
  ASSERT_TRUE(link.EnsureLinkOpen());
  comPort.Hold(true);
  link.WriteText("text");
  loop.After(3s, [this] { comPort.Hold(false); });
  link.WriteBlock("block");
  EXPECT_NEAR(Seconds(), 3, 0.01);
  EXPECT_EQ(comPort.sent, "text");
  loop.Run(0.01);
  EXPECT_EQ(comPort.sent, "textblock");
}

}  // namespace
}  // namespace corvex
