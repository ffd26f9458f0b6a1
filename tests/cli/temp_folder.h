/// A folder of its own for one test, removed with all it holds.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zelvo::test {

class TempFolder {
 public:
  TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder();

  [[nodiscard]] const std::string& path() const { return path_; }
  /// FOLDER/name.
  [[nodiscard]] std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }
  /// Names of all entries, hidden ones included, sorted.
  [[nodiscard]] std::vector<std::string> names() const;

 private:
  std::string path_;
};

/// Whole files as text; the test fails when it cannot be done.
void writeFile(const std::string& path, std::string_view content);
[[nodiscard]] std::string readFile(const std::string& path);

}  // namespace zelvo::test
