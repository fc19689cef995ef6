#pragma once

namespace corvex {

/// Sets a flag and clears it at the end of the scope, even if an exception unwinds the scope. Waits throw
/// such an exception when the program ends.
class ScopedFlag {
 public:
  explicit ScopedFlag(bool& flag) : flag_(flag) { flag_ = true; }
  ~ScopedFlag() { flag_ = false; }
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;

 private:
  bool& flag_;
};

}  // namespace corvex
