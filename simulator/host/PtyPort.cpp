#ifndef _WIN32

#include "host/PtyPort.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

namespace corvex::simulation::host {
namespace {

// How often the port checks whether the other end is open. The system does not report the opening.
constexpr EventLoop::Time kLookOut = std::chrono::milliseconds(100);

struct PseudoTerminal {
  int handle = -1;
  /// The name of the end that the PC's program opens.
  std::string name;
};

/// Opens a new pseudo terminal that passes all bytes unchanged. On failure, the handle is -1 and `error`
/// holds the reason.
PseudoTerminal OpenPseudoTerminal(std::string& error) {
  const int fd = posix_openpt(O_RDWR | O_NOCTTY);
  const char* name = nullptr;
  if (fd >= 0 && grantpt(fd) == 0 && unlockpt(fd) == 0 && fcntl(fd, F_SETFD, FD_CLOEXEC) == 0)
    name = ptsname(fd);
  // The other end is opened and closed once. Only then does the system report whether a program has opened
  // it.
  const int other = name == nullptr ? -1 : open(name, O_RDWR | O_NOCTTY);
  termios settings = {};
  const bool usable = other >= 0 && tcgetattr(other, &settings) == 0;
  if (usable) {
    cfmakeraw(&settings);
    tcsetattr(other, TCSANOW, &settings);
  } else {
    error = std::string("pseudo terminal: ") + std::strerror(errno);
  }
  if (other >= 0) close(other);
  if (usable) return {fd, name};
  if (fd >= 0) close(fd);
  return {};
}

/// Returns whether a program has opened the other end.
bool OtherEndOpen(int handle) {
  pollfd state = {handle, POLLIN, 0};
  return poll(&state, 1, 0) == 0 || (state.revents & POLLHUP) == 0;
}

/// Makes `link` a symbolic link to `target`. Replaces an old link, but nothing else of that name.
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

/// Removes the link if it still points to `target`.
void RemoveLink(const std::string& link, const std::string& target) {
  namespace fs = std::filesystem;
  std::error_code failure;
  if (fs::read_symlink(link, failure) == target && !failure) fs::remove(link, failure);
}

}  // namespace

PtyPort::~PtyPort() {
  Release();
}

bool PtyPort::Open(std::string& error) {
  auto [handle, name] = OpenPseudoTerminal(error);
  if (handle < 0) return false;
  handle_ = handle;
  name_ = std::move(name);
  if (!link_.empty() && !ReplaceLink(link_, name_, error)) return false;
  onNotice("pseudo terminal " + name_);
  LookOut();
  return true;
}

void PtyPort::Send(std::string_view bytes) {
  if (user_ != nullptr) user_->Send(bytes);
}

void PtyPort::HangUp() {
  loop_.Post([this] {
    if (user_ == nullptr) return;
    Release();
    onDown();
    std::string error;
    if (!Open(error)) onNotice(error);
  });
}

void PtyPort::LookOut() {
  if (!OtherEndOpen(handle_)) {
    lookOut_.Start(kLookOut, [this] { LookOut(); });
    return;
  }
  // The connection uses its own handle, because the terminal outlives it.
  user_ = std::make_unique<Connection<asio::posix::stream_descriptor>>(
      asio::posix::stream_descriptor(loop_.Io(), dup(handle_)),
      [this](std::string_view bytes) { onBytes(bytes); },
      [this] {
        user_.reset();
        onDown();
        LookOut();
      });
  onUp();
}

void PtyPort::Release() {
  lookOut_.Stop();
  user_.reset();
  if (!link_.empty()) RemoveLink(link_, name_);
  if (handle_ >= 0) close(std::exchange(handle_, -1));
}

}  // namespace corvex::simulation::host

#endif
