#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

namespace corvex::test {

/// A new empty folder, removed with all that is in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    static std::atomic<unsigned> count{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path() /
            ("corvex-test-" + std::to_string(stamp) + "-" + std::to_string(count++));
    std::filesystem::create_directories(path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }
  std::string Text() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace corvex::test
