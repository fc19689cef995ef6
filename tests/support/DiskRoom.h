#pragma once

#ifdef __unix__
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#endif

namespace corvex::test {

/// Limits the size of files. A write beyond the limit fails as on a full disk.
class DiskRoom {
 public:
  static constexpr long kAny = -1;
#ifdef __unix__
  static constexpr bool kWorks = true;
  DiskRoom() : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &normal_);
  }
  ~DiskRoom() {
    Set(kAny);
    std::signal(SIGXFSZ, handler_);
  }
  DiskRoom(const DiskRoom&) = delete;
  DiskRoom& operator=(const DiskRoom&) = delete;

  void Set(long bytes) {
    rlimit room = normal_;
    if (bytes != kAny) room.rlim_cur = std::min(static_cast<rlim_t>(bytes), normal_.rlim_max);
    setrlimit(RLIMIT_FSIZE, &room);
  }

 private:
  void (*handler_)(int);
  rlimit normal_{};
#else
  static constexpr bool kWorks = false;  // the system has no such limit
  void Set(long) {}
#endif
};

}  // namespace corvex::test
