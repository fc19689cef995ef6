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
  constexpr int kMost = 9;  // more than these share the last place
  for (number_ = 1; number_ <= kMost; ++number_) {
    const std::string number = number_ == 1 ? "" : '-' + std::to_string(number_);
    const Result result = Take((std::filesystem::path(folder) / ("corvex" + number + ".lock")).string());
    if (result == Result::Taken) return;
    if (result == Result::Impossible) break;
  }
  if (number_ <= kMost) number_ = 1;
}

#ifdef _WIN32

bool SystemFiles::MakeOwnerOnly(const std::string& path) {
  // Who may read it is what the folder says of its files.
  const HANDLE file = CreateFileW(std::filesystem::path(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  return file != INVALID_HANDLE_VALUE && CloseHandle(file) != 0;
}

bool SystemFiles::Replace(const std::string& file, const std::string& by) {
  const std::filesystem::path to(file);
  const std::filesystem::path from(by);
  if (ReplaceFileW(to.c_str(), from.c_str(), nullptr, 0, nullptr, nullptr) != 0) return true;
  // The one failure that leaves nothing under the old name.
  return GetLastError() == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2 &&
         MoveFileExW(from.c_str(), to.c_str(), 0) != 0;
}

CopyPlace::Result CopyPlace::Take(const std::string& file) {
  const HANDLE lock = CreateFileW(std::filesystem::path(file).c_str(), GENERIC_READ, 0, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (lock == INVALID_HANDLE_VALUE) {
    return GetLastError() == ERROR_SHARING_VIOLATION ? Result::Busy : Result::Impossible;
  }
  lock_ = lock;
  return Result::Taken;
}

CopyPlace::~CopyPlace() {
  if (lock_ != nullptr) CloseHandle(lock_);
}

#else

namespace {

/// Whether rights of a file stand in a list beside its mode.
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
  if (!grouped) mode &= ~static_cast<mode_t>(S_IRWXG);  // another group's rights
  if (chmod(by.c_str(), mode) != 0 || !grouped || !owned || old.st_nlink > 1) return false;
  return std::rename(by.c_str(), file.c_str()) == 0;
}

CopyPlace::Result CopyPlace::Take(const std::string& file) {
  // Opened for reading, so that another user's file will do as well.
  const int lock = open(file.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
  if (lock < 0) return Result::Impossible;
  if (flock(lock, LOCK_EX | LOCK_NB) != 0) {
    const bool busy = errno == EWOULDBLOCK;
    close(lock);
    return busy ? Result::Busy : Result::Impossible;
  }
  lock_ = lock;
  return Result::Taken;
}

CopyPlace::~CopyPlace() {
  if (lock_ >= 0) close(lock_);
}

#endif

}  // namespace corvex
