/// A folder of a test's own, which goes with the test.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zelvo::tests {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  /// Path of `name` in the folder; without a name, of the folder.
  [[nodiscard]] std::string path(std::string_view name = {}) const;
  /// Writes a file and answers its path.
  std::string put(std::string_view name, std::string_view content) const;
  /// Content of a file in it.
  [[nodiscard]] std::string content(std::string_view name) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace zelvo::tests
