#include "desktop/SystemFiles.h"

#include <filesystem>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#ifdef __linux__
#include <sys/xattr.h>
#endif
#endif

namespace corvex {

CopyPlace::CopyPlace(const std::string& folder) {
  constexpr int kMost = 9;  // all further copies share number 10, without a lock
  const auto file = [&folder](int number) {
    const std::string suffix = number == 1 ? "" : '-' + std::to_string(number);
    return (std::filesystem::path(folder) / ("corvex" + suffix + ".lock")).string();
  };
  Result own = Result::Busy;
  for (number_ = 1; number_ <= kMost; ++number_) {
    own = Take(file(number_), true, lock_);
    if (own != Result::Busy) break;
  }
  if (own == Result::Impossible) number_ = 1;
  alone_ = own == Result::Taken && number_ == 1;
  // Copies with higher numbers may still run after the first copy has ended.
  for (int other = 2; alone_ && other <= kMost; ++other) {
    Lock probe = kNoLock;
    alone_ = Take(file(other), false, probe) != Result::Busy;
    Release(probe);
  }
}

CopyPlace::~CopyPlace() {
  Release(lock_);
}

#ifdef _WIN32

bool SystemFiles::MakeOwnerOnly(const std::string& path) {
  // On Windows, a new file inherits its access rights from the folder.
  const HANDLE file = CreateFileW(std::filesystem::path(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  return file != INVALID_HANDLE_VALUE && CloseHandle(file) != 0;
}

bool SystemFiles::Replace(const std::string& file, const std::string& by) {
  const std::filesystem::path to(file);
  const std::filesystem::path from(by);
  // With a backup name, a failure leaves both files under their own names. If another program has the old
  // file open, the backup may remain. Its name is that of a temporary file, so it is deleted later.
  std::filesystem::path backup = from;
  backup.replace_filename(from.stem().native() + L"0" + from.extension().native());
  if (ReplaceFileW(to.c_str(), from.c_str(), backup.c_str(), 0, nullptr, nullptr) == 0) return false;
  DeleteFileW(backup.c_str());
  return true;
}

CopyPlace::Result CopyPlace::Take(const std::string& file, bool made, Lock& lock) {
  const HANDLE taken = CreateFileW(std::filesystem::path(file).c_str(), GENERIC_READ, 0, nullptr,
                                   made ? OPEN_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (taken == INVALID_HANDLE_VALUE) {
    return GetLastError() == ERROR_SHARING_VIOLATION ? Result::Busy : Result::Impossible;
  }
  lock = taken;
  return Result::Taken;
}

void CopyPlace::Release(Lock lock) {
  if (lock != kNoLock) CloseHandle(lock);
}

#else

namespace {

/// Returns true if a file has an access control list in addition to its mode.
bool HasRightsList([[maybe_unused]] const std::string& path) {
#ifdef __linux__
  return getxattr(path.c_str(), "system.posix_acl_access", nullptr, 0) > 0;
#else
  return false;
#endif
}

}  // namespace

bool SystemFiles::MakeOwnerOnly(const std::string& path) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  return file >= 0 && close(file) == 0;
}

bool SystemFiles::Replace(const std::string& file, const std::string& by) {
  struct stat old {};
  struct stat own {};
  if (stat(file.c_str(), &old) != 0 || stat(by.c_str(), &own) != 0) return false;
  if (HasRightsList(file) || HasRightsList(by)) return false;
  constexpr uid_t kSameOwner = static_cast<uid_t>(-1);
  constexpr gid_t kSameGroup = static_cast<gid_t>(-1);
  const bool grouped = own.st_gid == old.st_gid || chown(by.c_str(), kSameOwner, old.st_gid) == 0;
  const bool owned = own.st_uid == old.st_uid || chown(by.c_str(), old.st_uid, kSameGroup) == 0;
  mode_t mode = old.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
  if (!grouped) mode &= ~static_cast<mode_t>(S_IRWXG);  // these permissions were for the old group only
  if (chmod(by.c_str(), mode) != 0 || !grouped || !owned || old.st_nlink > 1) return false;
  return std::rename(by.c_str(), file.c_str()) == 0;
}

CopyPlace::Result CopyPlace::Take(const std::string& file, bool made, Lock& lock) {
  // Opened for reading, because a lock file of another user may not be writable.
  const int taken =
      open(file.c_str(), O_RDONLY | O_CLOEXEC | (made ? O_CREAT : 0), S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
  if (taken < 0) return Result::Impossible;
  if (flock(taken, LOCK_EX | LOCK_NB) != 0) {
    const bool busy = errno == EWOULDBLOCK;
    close(taken);
    return busy ? Result::Busy : Result::Impossible;
  }
  lock = taken;
  return Result::Taken;
}

void CopyPlace::Release(Lock lock) {
  if (lock != kNoLock) close(lock);
}

#endif

}  // namespace corvex
