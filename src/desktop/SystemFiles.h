#pragma once

#include <string>

#include "platform/Files.h"

namespace corvex {

class SystemFiles : public Files {
 public:
  bool MakeOwnerOnly(const std::string& path) override;
  /// On Windows, `file` keeps its access control list, and its owner and group become those of `by`. On other
  /// systems, a file with several hard links or with an access control list is not replaced.
  bool Replace(const std::string& file, const std::string& by) override;
};

/// The number of this copy of the program among the copies that run in the same folder. The copy holds a
/// system lock on a small file in the folder, so the number becomes free however the program ends.
class CopyPlace {
 public:
  /// Takes the lowest free number.
  explicit CopyPlace(const std::string& folder);
  CopyPlace(const CopyPlace&) = delete;
  CopyPlace& operator=(const CopyPlace&) = delete;
  ~CopyPlace();

  /// Counts from 1. If the folder does not support locks, every copy has the number 1.
  int number() const { return number_; }
  /// True if no other copy was running in the folder when this copy took its number.
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
  /// `made`: creates the file if it does not exist.
  static Result Take(const std::string& file, bool made, Lock& lock);
  static void Release(Lock lock);

  int number_ = 1;
  bool alone_ = false;
  Lock lock_ = kNoLock;
};

}  // namespace corvex
