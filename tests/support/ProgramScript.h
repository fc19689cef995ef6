#pragma once

#include <memory>

#include "support/Script.h"

namespace corvex::test {

/// Runs the lines of a script on the whole program, with its user, its modem and its surroundings.
class ProgramScript {
 public:
  ProgramScript();
  ~ProgramScript();

  /// Runs one line; its first word is the command. Throws std::runtime_error for an unknown one.
  void Run(const Words& quoted);
  /// Checks at the end of a script that nothing is left over.
  void Finish();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace corvex::test
