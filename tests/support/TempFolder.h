#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace corvex::test {

/// A folder of its own for one test, gone with all that is in it at the end.
class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("corvex-" + std::to_string(random()) + "-" + std::to_string(random()));
    std::filesystem::create_directory(path_);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }
  std::string Name() const { return path_.string(); }

  void Write(const std::string& file, std::string_view bytes) const {
    std::ofstream(path_ / file, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  std::string Read(const std::string& file) const {
    std::ifstream in(path_ / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  /// How many files and folders are in it.
  std::ptrdiff_t Count() const {
    return std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator());
  }

 private:
  std::filesystem::path path_;
};

}  // namespace corvex::test
