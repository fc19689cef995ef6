#include "desktop/QtSocketControl.h"

#include <QTcpServer>

#include "desktop/Wait.h"

namespace corvex {
namespace {

using namespace std::chrono_literals;
using test::Becomes;

class QtSocketControlTest : public ::testing::Test {
 protected:
  QtSocketControlTest() {
    EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
    sock.onDataArrival = [this] {
      received += sock.GetData();
      log += 'd';
    };
    sock.onClose = [this] {
      closedWith = received;
      log += 'c';
    };
  }
  /// Connects and returns the server's side of the connection.
  QTcpSocket* Connect() {
    EXPECT_TRUE(sock.Connect("127.0.0.1", server.serverPort()));
    EXPECT_NE(sock.GetState(), SocketControl::kClosed);
    EXPECT_TRUE(Becomes(loop, [&] {
      return sock.GetState() == SocketControl::kConnected && server.hasPendingConnections();
    }));
    return server.nextPendingConnection();
  }
  QtEventLoop loop;
  QTcpServer server;
  QtSocketControl sock{loop};
  std::string received;
  std::string closedWith;
  std::string log;
};

TEST_F(QtSocketControlTest, ConnectsAndPassesBytesBothWays) {
  QTcpSocket* peer = Connect();
  EXPECT_EQ(sock.LocalAddress(), "127.0.0.1");
  EXPECT_EQ(sock.RemotePort(), server.serverPort());
  const std::string all("a\0\xFF z", 5);
  sock.SendData(all);
  ASSERT_TRUE(Becomes(loop, [&] { return peer->bytesAvailable() == 5; }));
  EXPECT_EQ(peer->readAll().toStdString(), all);
  peer->write(all.data(), 5);
  ASSERT_TRUE(Becomes(loop, [&] { return received.size() == 5; }));
  EXPECT_EQ(received, all);
}

TEST_F(QtSocketControlTest, TheErrorStateLastsUntilClose) {
  const quint16 port = server.serverPort();
  server.close();
  for (const char* host : {"127.0.0.1", "no-such-host.invalid"}) {
    ASSERT_TRUE(sock.Connect(host, port)) << host;
    ASSERT_TRUE(Becomes(
        loop, [&] { return sock.GetState() == SocketControl::kError; }, 20))
        << host;
    EXPECT_FALSE(sock.Connect(host, port));
    sock.SendData("x");
    sock.Close();
    EXPECT_EQ(sock.GetState(), SocketControl::kClosed);
  }
  EXPECT_FALSE(sock.Connect("", port));
  EXPECT_FALSE(sock.Connect("127.0.0.1", 0));
  EXPECT_FALSE(sock.Connect("127.0.0.1", 65536));
  EXPECT_EQ(sock.GetState(), SocketControl::kClosed);
  EXPECT_EQ(log, "");
}

TEST_F(QtSocketControlTest, DeliversACompleteBurstBeforeThePeersClose) {
  QTcpSocket* peer = Connect();
  std::string burst(3'000'000, ' ');
  for (std::size_t i = 0; i < burst.size(); ++i) burst[i] = static_cast<char>(i * 11 + i / 253);
  peer->write(burst.data(), static_cast<qint64>(burst.size()));
  peer->disconnectFromHost();
  ASSERT_TRUE(Becomes(
      loop, [&] { return log.ends_with('c'); }, 20));
  EXPECT_TRUE(closedWith == burst);
  EXPECT_EQ(sock.GetState(), SocketControl::kPeerClosing);
  EXPECT_EQ(std::count(log.begin(), log.end(), 'c'), 1);
}

TEST_F(QtSocketControlTest, CloseReturnsAtOnceAndStillDeliversSentData) {
  QTcpSocket* peer = Connect();
  const std::string farewell(200'000, 'f');
  std::string arrived;
  sock.SendData(farewell);
  sock.Close();
  EXPECT_EQ(sock.GetState(), SocketControl::kClosed);
  ASSERT_TRUE(Becomes(loop, [&] {
    arrived += peer->readAll().toStdString();
    return peer->state() == QAbstractSocket::UnconnectedState;
  }));
  EXPECT_TRUE(arrived == farewell);
  EXPECT_EQ(log, "");
  EXPECT_EQ(sock.findChildren<QTcpSocket*>().size(), 0);
}

TEST_F(QtSocketControlTest, AConnectionReceivesNothingFromThePreviousOne) {
  QTcpSocket* peer = Connect();
  peer->write("old");
  ASSERT_TRUE(peer->waitForBytesWritten());
  // The bytes have arrived. Their event is posted but has not run yet.
  ASSERT_TRUE(sock.findChild<QTcpSocket*>()->waitForReadyRead());
  sock.Close();
  peer = Connect();
  peer->write("new");
  ASSERT_TRUE(Becomes(loop, [&] { return received.ends_with("new"); }));
  EXPECT_EQ(received, "new");
  EXPECT_EQ(sock.GetState(), SocketControl::kConnected);
}

}  // namespace
}  // namespace corvex
