/// A folder of one test's own, removed with all it holds.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace zelvo::tests {

class TempFolder {
 public:
  TempFolder() {
    std::string made = testing::TempDir() + "zelvo-update-XXXXXX";
    if (::mkdtemp(made.data()) == nullptr) ADD_FAILURE() << "no folder " << made;
    path_ = std::filesystem::canonical(made);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }

  [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

inline void writeFile(const std::filesystem::path& path, const std::string& content) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << content;
}

[[nodiscard]] inline std::string readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

}  // namespace zelvo::tests
