#pragma once

#include <string>

#include "platform/Files.h"

namespace corvex {

class SystemFiles : public Files {
 public:
  bool MakeOwnerOnly(const std::string& path) override;
  /// On Windows owner and group are those of the new file; what counts there is the list of rights, which is
  /// kept. Elsewhere a file with a second name or with a list of rights of its own is not replaced.
  bool Replace(const std::string& file, const std::string& by) override;
};

/// The place of this copy of the program among those that run in the same folder. It is held by a lock of the
/// system's on a small file there, so that it is free again however the program ends.
class CopyPlace {
 public:
  /// Takes the first free place.
  explicit CopyPlace(const std::string& folder);
  CopyPlace(const CopyPlace&) = delete;
  CopyPlace& operator=(const CopyPlace&) = delete;
  ~CopyPlace();

  /// From 1. Where the folder takes no locks every copy is the first.
  int number() const { return number_; }
  /// No other copy ran in the folder when this one took its place.
  bool alone() const { return alone_; }

 private:
#ifdef _WIN32
  using Lock = void*;
  static constexpr Lock kNoLock = nullptr;
#else
  using Lock = int;
  static constexpr Lock kNoLock = -1;
#endif
  enum class Result { Taken, Busy, Impossible };
  /// `made`: the file is made if it is not there.
  static Result Take(const std::string& file, bool made, Lock& lock);
  static void Release(Lock lock);

  int number_ = 1;
  bool alone_ = false;
  Lock lock_ = kNoLock;
};

}  // namespace corvex
