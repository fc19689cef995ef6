#pragma once

#include <string>

namespace corvex {

/// What the program needs of files and the standard library does not offer. Paths are in the encoding of the
/// system's narrow file names.
class Files {
 public:
  virtual ~Files() = default;
  /// Makes an empty file that only its owner may read and write, from its first moment on. False if that
  /// fails or something with this name exists. Where rights come from the folder, the file has those.
  virtual bool MakeOwnerOnly(const std::string& path) = 0;
  /// Puts the file `by` in the place of `file` in one step, with the owner, the group and all rights of
  /// `file`. False if the system cannot keep them: both files are still there, and `by` has been given what
  /// the system allows of the rights of `file`, and no more than those.
  virtual bool Replace(const std::string& file, const std::string& by) = 0;
};

}  // namespace corvex
