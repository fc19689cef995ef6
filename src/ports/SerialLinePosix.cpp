#ifndef _WIN32

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "ports/SerialLine.h"

namespace corvex {

namespace {

/// Returns whether another running program has claimed the device with a lock file. The lock file contains
/// the process id of that program.
bool ClaimedByLockFile(const std::filesystem::path& device) {
  std::error_code failed;
  const std::filesystem::path target = std::filesystem::canonical(device, failed);
  if (failed) return false;
  std::ifstream file("/var/lock/LCK.." + target.filename().string());
  pid_t owner = 0;
  return file >> owner && owner > 0 && owner != getpid() && (kill(owner, 0) == 0 || errno == EPERM);
}

tcflag_t DataBitsFlag(int dataBits) {
  switch (dataBits) {
    case 5:
      return CS5;
    case 6:
      return CS6;
    case 7:
      return CS7;
    default:
      return CS8;
  }
}

tcflag_t ParityFlags(Parity parity) {
  switch (parity) {
    case Parity::None:
      return 0;
    case Parity::Even:
      return PARENB;
    case Parity::Odd:
      return PARENB | PARODD;
#ifdef CMSPAR
    case Parity::Mark:
      return PARENB | PARODD | CMSPAR;
    case Parity::Space:
      return PARENB | CMSPAR;
#else
    default:
      return PARENB;
#endif
  }
  return 0;
}

}  // namespace

std::optional<LineHandle> OpenLine(const std::string& device, const LineSettings& settings) {
  const std::filesystem::path path =
      std::filesystem::path("/dev") / device;  // an absolute `device` replaces "/dev"
  if (device.empty() || ClaimedByLockFile(path)) return {};
  const int line = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (line < 0) return {};
  // flock locks the device itself, so the lock applies under every name of the device. Programs that do not
  // use flock are kept out by TIOCEXCL, which makes their calls of open fail.
  if (flock(line, LOCK_EX | LOCK_NB) != 0 || ioctl(line, TIOCEXCL) != 0 || !SetUpLine(line, settings)) {
    close(line);
    return {};
  }
  DiscardReceived(line);
  return line;
}

bool SetUpLine(LineHandle line, const LineSettings& settings) {
  termios attributes{};
  if (tcgetattr(line, &attributes) != 0) return false;
  cfmakeraw(&attributes);
  attributes.c_iflag &= ~static_cast<tcflag_t>(IXOFF | IXANY | INPCK);
  attributes.c_iflag |= IGNPAR;  // garbled bytes are dropped
  if (settings.xonXoff) attributes.c_iflag |= IXON | IXOFF;
  attributes.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | PARENB | PARODD | CRTSCTS);
#ifdef CMSPAR
  attributes.c_cflag &= ~static_cast<tcflag_t>(CMSPAR);
#else
  if (settings.parity == Parity::Mark || settings.parity == Parity::Space) return false;
#endif
  attributes.c_cflag |= CREAD | CLOCAL | DataBitsFlag(settings.dataBits) | ParityFlags(settings.parity);
  // With five data bits, CSTOPB selects 1.5 stop bits. With more data bits, it selects 2 stop bits, which a
  // receiver that expects 1.5 also accepts.
  if (settings.stopBits != StopBits::One) attributes.c_cflag |= CSTOPB;
  if (settings.rtsCts) attributes.c_cflag |= CRTSCTS;
  attributes.c_cc[VMIN] = 1;
  attributes.c_cc[VTIME] = 0;
  if (cfsetspeed(&attributes, static_cast<speed_t>(settings.speed)) != 0) return false;
  if (tcsetattr(line, TCSANOW, &attributes) != 0) return false;
  // Raise DTR and RTS. Some units draw power from these lines or answer only while they are high. A pseudo
  // terminal has no such lines, so an error is ignored.
  const int lines = settings.rtsCts ? TIOCM_DTR : TIOCM_DTR | TIOCM_RTS;
  (void)ioctl(line, TIOCMBIS, &lines);
  return true;
}

void DiscardReceived(LineHandle line) {
  tcflush(line, TCIFLUSH);
}

void DiscardUnsent(LineHandle line) {
  tcflush(line, TCOFLUSH);
}

std::size_t ReadSize(LineHandle, std::size_t most) {
  return most;
}

std::size_t UnsentBytes(LineHandle line, std::size_t pending) {
  int queued = 0;
  if (ioctl(line, TIOCOUTQ, &queued) != 0 || queued < 0) queued = 0;
  return static_cast<std::size_t>(queued) + pending;
}

bool LineAlive(LineHandle line) {
  termios attributes{};
  return tcgetattr(line, &attributes) == 0;
}

}  // namespace corvex

#endif
