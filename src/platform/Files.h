#pragma once

#include <string>

namespace corvex {

/// File operations that the standard library does not offer. Paths use the system's narrow file name
/// encoding.
class Files {
 public:
  virtual ~Files() = default;
  /// Creates an empty file that only its owner may read and write. The file never has other permissions, not
  /// even briefly. On systems where new files inherit the permissions of their folder, the file has those
  /// instead. Returns false on failure, or if the path exists already.
  virtual bool MakeOwnerOnly(const std::string& path) = 0;
  /// Replaces `file` with the file `by` in one step and keeps the owner, group and permissions of `file`.
  /// Returns false if the system cannot keep them. Both files then still exist, and `by` has as many of the
  /// permissions of `file` as the system allows, and no others.
  virtual bool Replace(const std::string& file, const std::string& by) = 0;
};

}  // namespace corvex
