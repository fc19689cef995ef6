#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace corvex::test {

// Tests of the modem's stream as text files; tests/data/streams/README.md describes their language.

struct StreamWord {
  std::string text;
  bool quoted = false;
};

struct StreamLine {
  int number = 0;
  std::vector<StreamWord> words;
};

struct StreamTest {
  std::string file;
  std::string name;
  bool dependsOnPieces = false;  ///< What comes out depends on how the stream is cut; that is meant.
  std::vector<StreamLine> lines = {};
};

/// All tests of the files in a folder, in the order of file names. Throws std::runtime_error, with file and
/// line, on one that cannot be read.
std::vector<StreamTest> LoadStreamTests(const std::filesystem::path& folder);

/// As written: each feed is one receive event. ByteByByte: each byte of it is.
enum class Feeding { AsWritten, ByteByByte };

// For the reports of the test framework.
void PrintTo(const StreamTest& test, std::ostream* out);
void PrintTo(Feeding feeding, std::ostream* out);

/// Runs a test; what fails is reported with the file and line.
void RunStreamTest(const StreamTest& test, Feeding feeding);

}  // namespace corvex::test
