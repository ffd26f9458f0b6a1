#include "tests/platform/temp_folder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace zelvo::tests {

TempFolder::TempFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "zelvo-test-XXXXXX").string();
  if (::mkdtemp(name.data()) != nullptr) folder_ = name;
  ::chmod(name.c_str(), 0755);  // also for tests that continue as another user
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

std::string TempFolder::path(std::string_view name) const { return name.empty() ? folder_ : folder_ / name; }

std::string TempFolder::put(std::string_view name, std::string_view content) const {
  std::ofstream(path(name), std::ios::binary) << content;
  return path(name);
}

std::string TempFolder::content(std::string_view name) const {
  std::ostringstream text;
  std::ifstream file(path(name), std::ios::binary);
  if (file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
  return text.str();
}

}  // namespace zelvo::tests
