#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace corvex::test {

/// A folder for one test, removed at the end. It is called "corvex" and has a parent folder of its own, which
/// is removed as well, because the program writes one file beside its folder.
class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("corvex-" + std::to_string(random()) + "-" + std::to_string(random())) / "corvex";
    std::filesystem::create_directories(path_);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_.parent_path(), ignored);
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
  /// The number of files and folders in it.
  std::ptrdiff_t Count() const {
    return std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator());
  }

 private:
  std::filesystem::path path_;
};

}  // namespace corvex::test
