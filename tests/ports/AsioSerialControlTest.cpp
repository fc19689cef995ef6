#ifdef __unix__

#include "ports/AsioSerialControl.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <thread>

#include "link/modComSock.h"
#include "support/FakePlatform.h"
#include "support/RealLoop.h"

namespace corvex {
namespace {

using namespace std::chrono_literals;
using test::Becomes;

/// The far end of a serial line: a pseudo terminal.
class FarEnd {
 public:
  FarEnd() {
    std::array<char, 128> path{};
    int line = -1;
    EXPECT_EQ(openpty(&master_, &line, path.data(), nullptr, nullptr), 0);
    // Stays open, so that the line keeps its settings while no port has it open.
    line_ = line;
    device = path.data();
    fcntl(master_, F_SETFL, O_NONBLOCK);
    termios raw{};
    tcgetattr(line_, &raw);
    cfmakeraw(&raw);
    tcsetattr(line_, TCSANOW, &raw);
  }
  ~FarEnd() { HangUp(); }
  FarEnd(const FarEnd&) = delete;
  FarEnd& operator=(const FarEnd&) = delete;

  void HangUp() {
    if (master_ >= 0) close(master_);
    if (line_ >= 0) close(line_);
    master_ = line_ = -1;
  }
  /// Returns how many bytes the line took; it may be full.
  std::size_t Send(std::string_view bytes) {
    const ssize_t sent = write(master_, bytes.data(), bytes.size());
    return sent < 0 ? 0 : static_cast<std::size_t>(sent);
  }
  std::string Take() {
    std::array<char, 4096> buffer{};
    const ssize_t count = read(master_, buffer.data(), buffer.size());
    return count <= 0 ? std::string() : std::string(buffer.data(), static_cast<std::size_t>(count));
  }
  int Line() const { return line_; }
  std::string device;

 private:
  int master_ = -1;
  int line_ = -1;
};

/// A block of bytes in which no two pieces are alike.
std::string Block(std::size_t size) {
  std::string block(size, ' ');
  for (std::size_t i = 0; i < size; ++i) block[i] = static_cast<char>(i * 7 + i / 251);
  return block;
}

class AsioSerialControlTest : public ::testing::Test,
                              protected test::FakesWith<test::RealLoop, test::FakeWindows> {
 protected:
  AsioSerialControlTest() {
    port.SetSettings("115200,n,8,1");
    port.onComm = [this](SerialControl::CommEvent event) {
      events.push_back(event);
      if (event == SerialControl::kEvReceive) received += port.Input();
    };
  }
  FarEnd far;
  AsioSerialControl port{loop, [this](int number) { return number == 1 ? far.device : "/dev/none"; }};
  std::string received;
  std::vector<int> events;
};

TEST_F(AsioSerialControlTest, PassesAllBytesBothWaysButNoneFromBeforeItsOpening) {
  far.Send("stale");
  ASSERT_TRUE(port.Open());
  std::string all = Block(256);
  far.Send(all);
  EXPECT_TRUE(events.empty());  // events never come within a call
  ASSERT_TRUE(Becomes(loop, [&] { return received.size() >= all.size(); }));
  EXPECT_EQ(received, all);

  all = Block(256 * 1024);  // more than the line takes at once
  ASSERT_TRUE(port.Output(all.substr(0, 1000)));
  ASSERT_TRUE(port.Output(all.substr(1000)));
  std::string arrived;
  ASSERT_TRUE(Becomes(loop, [&] { return (arrived += far.Take()).size() >= all.size(); }));
  EXPECT_TRUE(arrived == all);
  ASSERT_TRUE(Becomes(loop, [&] { return port.OutBufferCount() == 0; }));
}

TEST_F(AsioSerialControlTest, ABurstLargerThanTheBufferArrivesCompletely) {
  ASSERT_TRUE(port.Open());
  const std::string burst = Block(300'000);
  bool taking = false;  // at first the handler leaves the bytes in the port
  port.onComm = [&](SerialControl::CommEvent) {
    if (taking) received += port.Input();
  };
  std::size_t sent = 0;
  const auto send = [&] { sent += far.Send(std::string_view(burst).substr(sent)); };
  for (int round = 0; round < 100; ++round) {
    send();
    loop.Pump(loop.Now() + 2ms);
  }
  EXPECT_LT(sent, burst.size());
  taking = true;
  ASSERT_TRUE(Becomes(loop, [&] {
    send();
    return received.size() >= burst.size();
  }));
  EXPECT_TRUE(received == burst);
}

TEST_F(AsioSerialControlTest, AHangUpClosesThePortOnceAndTheProcessIsIdle) {
  ASSERT_TRUE(port.Open());
  far.Send("last words");
  ASSERT_TRUE(Becomes(loop, [&] { return !received.empty(); }));
  far.HangUp();
  ASSERT_TRUE(Becomes(loop, [&] { return !port.PortOpen(); }));
  port.Output("into the void");
  const double cpu = test::CpuMilliseconds();
  test::Elapse(loop, 300ms);
  EXPECT_LT(test::CpuMilliseconds() - cpu, 100);
  EXPECT_EQ(received, "last words");
  EXPECT_EQ(std::count(events.begin(), events.end(), SerialControl::kEvLineLost), 1);
  EXPECT_FALSE(port.Open());
}

TEST_F(AsioSerialControlTest, EventsOfAClosedPortAreNotDelivered) {
  ASSERT_TRUE(port.Open());
  far.Send("old");
  std::this_thread::sleep_for(50ms);  // the bytes have arrived; their event is posted but has not run
  port.Close();
  ASSERT_TRUE(port.Open());
  test::Elapse(loop, 30ms);
  EXPECT_TRUE(events.empty());
}

TEST_F(AsioSerialControlTest, RefusesPortsAndSettingsThatCannotWork) {
  ASSERT_TRUE(port.Open());
  EXPECT_FALSE(port.SetCommPort(2));  // while the port is open

  const auto link = std::filesystem::temp_directory_path() / ("corvex-link-" + std::to_string(getpid()));
  std::filesystem::remove(link);
  std::filesystem::create_symlink(far.device, link);
  AsioSerialControl other(loop, [&](int number) { return number == 1 ? far.device : link.string(); });
  EXPECT_FALSE(other.Open());
  EXPECT_TRUE(other.SetCommPort(2));
  EXPECT_FALSE(other.Open()) << "the same device by another name";
  std::filesystem::remove(link);

  port.Close();
  EXPECT_TRUE(port.SetCommPort(2));
  EXPECT_FALSE(port.Open()) << "the device does not exist";
  EXPECT_FALSE(port.PortOpen());
  EXPECT_TRUE(port.SetCommPort(1));
  for (const char* line :
       {"", "fast,n,8,1", "9600,n,8", "9600,x,8,1", "9600,n,9,1", "9600,n,8,3", "-1,n,8,1"}) {
    port.SetSettings(line);
    EXPECT_FALSE(port.Open()) << line;
    EXPECT_EQ(port.Settings(), line);
  }
  port.SetSettings("9600,N,8,1");
  port.SetHandshaking(3);
  EXPECT_TRUE(port.Open());
}

// Output that a held line has not taken must never leave later. Output that is written after that must.
TEST_F(AsioSerialControlTest, DiscardedOutputNeverLeaves) {
  for (const bool close : {false, true}) {
    ASSERT_TRUE(port.Open());
    int taken = 0;
    for (int i = 0; i < 30; ++i) taken += port.Output(std::string(100'000, 'x')) ? 1 : 0;
    EXPECT_EQ(taken, 10) << "a line that takes nothing must not fill the memory";
    test::Elapse(loop, 20ms);
    ASSERT_GT(port.OutBufferCount(), 0);
    EXPECT_LE(port.OutBufferCount(), 1024 * 1024);
    const auto start = loop.Now();
    if (close) {
      port.Close();
      ASSERT_TRUE(port.Open());
    } else {
      port.DiscardOutput();
    }
    EXPECT_EQ(port.OutBufferCount(), 0);
    EXPECT_LT(loop.Now() - start, 500ms);
    while (!far.Take().empty()) {
    }
    port.Output("after");
    std::string arrived;
    ASSERT_TRUE(Becomes(loop, [&] { return (arrived += far.Take()).ends_with("after"); }));
    EXPECT_EQ(arrived, "after");
    far.Send("still read");
    ASSERT_TRUE(Becomes(loop, [&] { return received.ends_with("still read"); }));
    port.Close();
  }
}

TEST_F(AsioSerialControlTest, TheLastBytesOfALinkArrive) {
  const Platform real{loop, windows, port, serialPorts, sock, dialogs, printers, sound, shell, LongDate, {}};
  ReceiveBuffer buffer(loop);
  MainState main;
  TerminalLink link(real, settings, buffer, main);
  ASSERT_TRUE(link.EnsureLinkOpen());
  link.WriteText("quit\r\nat\r\n");
  link.CloseLink();
  EXPECT_FALSE(port.PortOpen());
  EXPECT_EQ(far.Take(), "quit\r\nat\r\n");
}

TEST_F(AsioSerialControlTest, SetsUpTheLineAndChangesItWhileOpen) {
  const struct {
    const char* line;
    bool flow;
    speed_t speed;
  } cases[]{{"2400,n,8,2", true, B2400}, {"115200,n,8,1", false, B115200}};
  for (const auto& [line, flow, speed] : cases) {
    port.SetSettings(line);
    port.SetHandshaking(flow ? 3 : 0);
    ASSERT_TRUE(port.PortOpen() || port.Open());
    termios attributes{};
    ASSERT_EQ(tcgetattr(far.Line(), &attributes), 0);
    EXPECT_EQ(cfgetospeed(&attributes), speed);
    EXPECT_EQ(attributes.c_cflag & (CSTOPB | CRTSCTS), flow ? CSTOPB | CRTSCTS : 0u);
    EXPECT_EQ(attributes.c_iflag & (IXON | IXOFF), flow ? IXON | IXOFF : 0u);
  }
}

TEST_F(AsioSerialControlTest, AnIdlePortUsesNoProcessorTimeAndItsEndLeavesNothing) {
  ASSERT_TRUE(port.Open());
  const double cpu = test::CpuMilliseconds();
  test::Elapse(loop, 300ms);
  EXPECT_LT(test::CpuMilliseconds() - cpu, 20);
  // A control that ends while its thread reports bytes.
  for (int i = 0; i < 50; ++i) {
    FarEnd end;
    AsioSerialControl brief(loop, [&](int) { return end.device; });
    brief.onComm = [](SerialControl::CommEvent) { ADD_FAILURE() << "an event of a destroyed control"; };
    ASSERT_TRUE(brief.Open());
    end.Send("bytes");
    if (i % 2 == 0) std::this_thread::sleep_for(1ms);
  }
  test::Elapse(loop, 20ms);
}

}  // namespace
}  // namespace corvex

#endif
