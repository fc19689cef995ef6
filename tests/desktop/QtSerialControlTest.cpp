#ifdef __unix__

#include "desktop/QtSerialControl.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "Wait.h"

namespace corvex {
namespace {

using namespace std::chrono_literals;
using test::Becomes;

/// The far end of a line: a pseudo terminal.
class FarEnd {
 public:
  FarEnd() {
    std::array<char, 128> path{};
    int line = -1;
    EXPECT_EQ(openpty(&master_, &line, path.data(), nullptr, nullptr), 0);
    // The line's settings outlive this: the far end stays there without a near one.
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
  /// Returns how many of the bytes went out; the line may be full.
  std::size_t Send(std::string_view bytes) {
    const ssize_t sent = write(master_, bytes.data(), bytes.size());
    return sent < 0 ? 0 : static_cast<std::size_t>(sent);
  }
  std::string Take() {
    std::array<char, 4096> buffer{};
    const ssize_t count = read(master_, buffer.data(), buffer.size());
    return count <= 0 ? std::string() : std::string(buffer.data(), static_cast<std::size_t>(count));
  }
  std::string device;

 private:
  int master_ = -1;
  int line_ = -1;
};

class QtSerialControlTest : public ::testing::Test {
 protected:
  QtSerialControlTest() {
    port.SetSettings("115200,n,8,1");
    port.onComm = [this](SerialControl::CommEvent event) {
      events.push_back(event);
      if (event == SerialControl::kEvReceive) received += port.Input();
    };
  }
  QtEventLoop loop;
  FarEnd far;
  QtSerialControl port{loop, [this](int number) { return number == 1 ? far.device : "/dev/none"; }};
  std::string received;
  std::vector<int> events;
};

TEST_F(QtSerialControlTest, PassesAllBytesBothWaysButNoneFromBefore) {
  far.Send("stale");
  ASSERT_TRUE(port.Open());
  std::string all(256, '\0');
  for (int i = 0; i < 256; ++i) all[static_cast<std::size_t>(i)] = static_cast<char>(i);
  far.Send(all);
  EXPECT_TRUE(events.empty());  // never from within a call
  ASSERT_TRUE(Becomes(loop, [&] { return received.size() >= all.size(); }));
  EXPECT_EQ(received, all);

  port.Output(all);
  std::string arrived;
  ASSERT_TRUE(Becomes(loop, [&] { return (arrived += far.Take()).size() >= all.size(); }));
  EXPECT_EQ(arrived, all);
  EXPECT_EQ(port.OutBufferCount(), 0);
}

TEST_F(QtSerialControlTest, ABurstBeyondTheBufferIsLateAndComplete) {
  ASSERT_TRUE(port.Open());
  std::string burst(300'000, ' ');
  for (std::size_t i = 0; i < burst.size(); ++i) burst[i] = static_cast<char>(i * 7 + i / 251);
  bool taking = false;  // at first the handler leaves the bytes where they are
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

TEST_F(QtSerialControlTest, AHangUpClosesThePortOnceAndLeavesTheProcessIdle) {
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

TEST_F(QtSerialControlTest, EventsOfAClosedPortAreNotDelivered) {
  ASSERT_TRUE(port.Open());
  far.Send("old");
  // The bytes have come, and their event is posted and has not run.
  ASSERT_TRUE(port.findChild<QSerialPort*>()->waitForReadyRead(1000));
  port.Close();
  ASSERT_TRUE(port.Open());
  test::Elapse(loop, 30ms);
  EXPECT_TRUE(events.empty());
}

TEST_F(QtSerialControlTest, RefusesWhatIsNotToBeHad) {
  ASSERT_TRUE(port.Open());
  EXPECT_FALSE(port.SetCommPort(2));  // not while it is open

  const auto link = std::filesystem::temp_directory_path() / ("corvex-link-" + std::to_string(getpid()));
  std::filesystem::remove(link);
  std::filesystem::create_symlink(far.device, link);
  QtSerialControl other(loop, [&](int number) { return number == 1 ? far.device : link.string(); });
  EXPECT_FALSE(other.Open());
  EXPECT_TRUE(other.SetCommPort(2));
  EXPECT_FALSE(other.Open()) << "the same device by another name";
  std::filesystem::remove(link);

  port.Close();
  EXPECT_TRUE(port.SetCommPort(2));
  EXPECT_FALSE(port.Open()) << "a device that is not there";
  EXPECT_FALSE(port.PortOpen());
  EXPECT_TRUE(port.SetCommPort(1));
  for (const char* settings :
       {"", "fast,n,8,1", "9600,n,8", "9600,x,8,1", "9600,n,9,1", "9600,n,8,3", "-1,n,8,1"}) {
    port.SetSettings(settings);
    EXPECT_FALSE(port.Open()) << settings;
    EXPECT_EQ(port.Settings(), settings);
  }
  port.SetSettings("9600,N,8,1");
  port.SetHandshaking(3);
  EXPECT_TRUE(port.Open());
}

TEST_F(QtSerialControlTest, ALineThatTakesNothingDoesNotFillTheMemory) {
  ASSERT_TRUE(port.Open());
  const std::string block(100'000, 'x');
  for (int i = 0; i < 30; ++i) port.Output(block);
  test::Elapse(loop, 20ms);
  EXPECT_GT(port.OutBufferCount(), 0);
  EXPECT_LE(port.OutBufferCount(), 1024 * 1024);
  EXPECT_TRUE(port.PortOpen());
  port.DiscardOutput();
  EXPECT_EQ(port.OutBufferCount(), 0);
}

}  // namespace
}  // namespace corvex

#endif
