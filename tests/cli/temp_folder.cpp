#include "tests/cli/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace zelvo::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
  std::string pattern = (fs::temp_directory_path() / "zelvo-cli-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
  path_ = pattern;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  fs::permissions(path_, fs::perms::owner_all, ignored);
  fs::remove_all(path_, ignored);
}

std::vector<std::string> TempFolder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(path_)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

void writeFile(const std::string& path, std::string_view content) {
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
  std::string content(static_cast<std::size_t>(fs::file_size(path)), '\0');
  file.read(content.data(), static_cast<std::streamsize>(content.size()));
  return content;
}

}  // namespace zelvo::test
