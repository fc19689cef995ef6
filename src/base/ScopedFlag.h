#pragma once

namespace corvex {

/// Sets a flag for as long as it lives, so that the flag is cleared however the scope is left: a wait that
/// unwinds because the program ends included.
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
