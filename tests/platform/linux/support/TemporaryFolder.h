// A folder of a test's own that goes with the test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace quillmere::support {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "quillmere-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] std::string path(const std::string& below = {}) const {
    return below.empty() ? path_.string() : (path_ / below).string();
  }
  void write(const std::string& below, const std::string& text) const {
    std::filesystem::create_directories((path_ / below).parent_path());
    std::ofstream(path_ / below, std::ios::binary) << text;
  }
  void link(const std::string& below, const std::string& target) const {
    std::filesystem::create_directories((path_ / below).parent_path());
    std::filesystem::create_symlink(target, path_ / below);
  }
  void remove(const std::string& below) const { std::filesystem::remove_all(path_ / below); }

 private:
  std::filesystem::path path_;
};

}  // namespace quillmere::support
