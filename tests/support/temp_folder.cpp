#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

namespace zelvo::tests {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
  std::string made = (fs::temp_directory_path() / "zelvo-XXXXXX").string();
  if (::mkdtemp(made.data()) == nullptr) {
    ADD_FAILURE() << "no folder " << made;
    return;
  }
  ::chmod(made.c_str(), 0755);  // also for tests that continue as another user
  path_ = fs::canonical(made).string();
}

TempFolder::~TempFolder() {
  if (path_.empty()) return;
  std::error_code ignored;
  fs::permissions(path_, fs::perms::owner_all, ignored);
  fs::remove_all(path_, ignored);
}

std::string TempFolder::path(std::string_view name) const {
  return name.empty() ? path_ : path_ + "/" + std::string(name);
}

std::string TempFolder::put(std::string_view name, std::string_view content) const {
  writeFile(path(name), content);
  return path(name);
}

std::string TempFolder::content(std::string_view name) const {
  std::error_code ignored;
  return fs::exists(path(name), ignored) ? readFile(path(name)) : std::string();
}

std::vector<std::string> TempFolder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(path_)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

void writeFile(const std::string& path, std::string_view content) {
  std::error_code ignored;
  fs::create_directories(fs::path(path).parent_path(), ignored);
  std::ofstream file(path, std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  if (!file) ADD_FAILURE() << path << " could not be written";
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    ADD_FAILURE() << path << " could not be read";
    return {};
  }
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

}  // namespace zelvo::tests
