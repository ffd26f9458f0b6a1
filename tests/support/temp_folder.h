/// A folder of one test's own, removed with all it holds.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvo::tests {

/// It is this user's, and other users may enter it.
class TempFolder {
 public:
  TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder();

  /// Path of `name` in the folder; without a name, of the folder. No part of it is a link.
  [[nodiscard]] std::string path(std::string_view name = {}) const;
  [[nodiscard]] std::string operator/(std::string_view name) const { return path(name); }
  /// Writes a file and answers its path.
  std::string put(std::string_view name, std::string_view content) const;
  /// Content of a file in it; empty without one.
  [[nodiscard]] std::string content(std::string_view name) const;
  /// Names of all entries, hidden ones included, sorted.
  [[nodiscard]] std::vector<std::string> names() const;

 private:
  std::string path_;
};

/// Writes a whole file, and makes the folders above it; the test fails when it cannot be done.
void writeFile(const std::string& path, std::string_view content);
/// The whole file as text; the test fails when it cannot be read.
[[nodiscard]] std::string readFile(const std::string& path);

}  // namespace zelvo::tests
