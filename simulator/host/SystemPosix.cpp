#ifndef _WIN32

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "host/System.h"

namespace corvex::simulation::host {
namespace {

// A signal that comes between the look at the flag and the sleep would be missed; a byte in this pipe is not.
std::array<int, 2> wakePipe{-1, -1};
volatile std::sig_atomic_t endRequested = 0;

void OnSignal(int) {
  const int before = errno;
  endRequested = 1;
  [[maybe_unused]] const auto written = write(wakePipe[1], "", 1);
  errno = before;
}

int Fd(Handle handle) {
  return static_cast<int>(handle);
}

std::string Reason(const std::string& what) {
  return what + ": " + std::strerror(errno);
}

bool SetNonBlocking(int fd) {
  const int flags = fcntl(fd, F_GETFL);
  return flags >= 0 && fcntl(fd, F_SETFL, flags | O_NONBLOCK) == 0 && fcntl(fd, F_SETFD, FD_CLOEXEC) == 0;
}

bool TryAgain() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

void SetOption(int fd, int level, int name, int value) {
  // A system that has no such option works without it.
  (void)setsockopt(fd, level, name, &value, sizeof value);
}

}  // namespace

bool StartSystem(std::string& error) {
  if (pipe(wakePipe.data()) != 0 || !SetNonBlocking(wakePipe[0]) || !SetNonBlocking(wakePipe[1])) {
    error = Reason("pipe");
    return false;
  }
  struct sigaction action = {};
  action.sa_handler = OnSignal;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  sigaction(SIGHUP, &action, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  return true;
}

bool EndRequested() {
  return endRequested != 0;
}

Handle Listen(std::uint16_t port, bool allAddresses, std::string& error) {
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(allAddresses ? INADDR_ANY : INADDR_LOOPBACK);
  if (fd >= 0) SetOption(fd, SOL_SOCKET, SO_REUSEADDR, 1);
  if (fd < 0 || !SetNonBlocking(fd) ||
      bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 || listen(fd, 4) != 0) {
    constexpr std::uint16_t kFirstFreePort = 1024;
    error = Reason("port " + std::to_string(port));
    if (errno == EACCES && port < kFirstFreePort) {
      error +=
          "; ports below 1024 are root's: use sudo, or once and for all "
          "sudo setcap cap_net_bind_service=+ep on this program's file";
    }
    if (fd >= 0) close(fd);
    return kNoHandle;
  }
  return fd;
}

std::uint16_t LocalPort(Handle listener) {
  sockaddr_in address = {};
  socklen_t size = sizeof address;
  if (getsockname(Fd(listener), reinterpret_cast<sockaddr*>(&address), &size) != 0) return 0;
  return ntohs(address.sin_port);
}

Handle Accept(Handle listener) {
  const int fd = accept(Fd(listener), nullptr, nullptr);
  if (fd < 0) return kNoHandle;
  if (!SetNonBlocking(fd)) {
    close(fd);
    return kNoHandle;
  }
  SetOption(fd, IPPROTO_TCP, TCP_NODELAY, 1);
  SetOption(fd, SOL_SOCKET, SO_KEEPALIVE, 1);
#ifdef TCP_KEEPIDLE
  SetOption(fd, IPPROTO_TCP, TCP_KEEPIDLE, 10);
  SetOption(fd, IPPROTO_TCP, TCP_KEEPINTVL, 5);
  SetOption(fd, IPPROTO_TCP, TCP_KEEPCNT, 3);
#endif
#ifdef TCP_USER_TIMEOUT
  SetOption(fd, IPPROTO_TCP, TCP_USER_TIMEOUT, 20000);
#endif
  return fd;
}

PseudoTerminal OpenPseudoTerminal(std::string& error) {
  const int fd = posix_openpt(O_RDWR | O_NOCTTY);
  const char* name = nullptr;
  if (fd >= 0 && grantpt(fd) == 0 && unlockpt(fd) == 0 && SetNonBlocking(fd)) name = ptsname(fd);
  // The other end is opened and closed once: only after that does the system tell whether anybody has it
  // open.
  const int other = name == nullptr ? -1 : open(name, O_RDWR | O_NOCTTY);
  termios settings = {};
  const bool usable = other >= 0 && tcgetattr(other, &settings) == 0;
  if (usable) {
    cfmakeraw(&settings);
    tcsetattr(other, TCSANOW, &settings);
  } else {
    error = Reason("pseudo terminal");
  }
  if (other >= 0) close(other);
  if (usable) return {fd, name};
  if (fd >= 0) close(fd);
  return {};
}

bool OtherEndOpen(Handle handle) {
  pollfd state = {Fd(handle), POLLIN, 0};
  return poll(&state, 1, 0) == 0 || (state.revents & POLLHUP) == 0;
}

bool ReplaceLink(const std::string& link, const std::string& target, std::string& error) {
  namespace fs = std::filesystem;
  std::error_code failure;
  const fs::file_status status = fs::symlink_status(link, failure);
  if (fs::is_symlink(status)) {
    fs::remove(link, failure);
  } else if (fs::exists(status)) {
    error = link + ": exists and is not a link";
    return false;
  }
  fs::create_symlink(target, link, failure);
  if (failure) error = link + ": " + failure.message();
  return !failure;
}

void RemoveLink(const std::string& link, const std::string& target) {
  namespace fs = std::filesystem;
  std::error_code failure;
  if (fs::read_symlink(link, failure) == target && !failure) fs::remove(link, failure);
}

std::optional<std::string> Read(Handle handle) {
  std::array<char, 4096> bytes;
  const ssize_t count = read(Fd(handle), bytes.data(), bytes.size());
  if (count > 0) return std::string(bytes.data(), static_cast<std::size_t>(count));
  if (count < 0 && TryAgain()) return std::string();
  return std::nullopt;
}

std::optional<std::size_t> Write(Handle handle, std::string_view bytes) {
  const ssize_t count = write(Fd(handle), bytes.data(), bytes.size());
  if (count >= 0) return static_cast<std::size_t>(count);
  if (TryAgain()) return 0;
  return std::nullopt;
}

void Close(Handle handle) {
  if (handle != kNoHandle) close(Fd(handle));
}

void Wait(std::vector<Watch>& watches, EventLoop::Time time) {
  std::vector<pollfd> states;
  states.reserve(watches.size() + 1);
  for (const Watch& watch : watches) {
    states.push_back({Fd(watch.handle), static_cast<short>(watch.write ? POLLIN | POLLOUT : POLLIN), 0});
  }
  states.push_back({wakePipe[0], POLLIN, 0});
  // Rounded up: a wait that ends a little early would only be begun again.
  const auto whole = std::chrono::ceil<std::chrono::milliseconds>(time).count();
  constexpr std::int64_t kLongest = 3'600'000;
  const int milliseconds = time < EventLoop::Time::zero() ? -1 : static_cast<int>(std::min(whole, kLongest));
  const int count = poll(states.data(), states.size(), milliseconds);
  for (std::size_t i = 0; i < watches.size(); ++i) watches[i].ready = count > 0 && states[i].revents != 0;
}

double LocalTime() {
  timeval now = {};
  gettimeofday(&now, nullptr);
  tm local = {};
  localtime_r(&now.tv_sec, &local);
  return static_cast<double>(now.tv_sec + local.tm_gmtoff) + now.tv_usec / 1e6;
}

}  // namespace corvex::simulation::host

#endif
