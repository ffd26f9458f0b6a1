#include "platform/paths.h"

namespace zelvo::platform {

std::string folderOf(const std::string& path) {
  std::size_t end = path.size();
  while (end > 1 && path[end - 1] == '/') --end;
  const std::size_t slash = path.rfind('/', end - 1);
  if (path.empty() || slash == std::string::npos) return ".";
  std::size_t last = slash;
  while (last > 0 && path[last - 1] == '/') --last;
  return last == 0 ? "/" : path.substr(0, last);
}

std::string nameOf(const std::string& path) {
  const std::size_t last = path.find_last_not_of('/');
  if (last == std::string::npos) return {};
  const std::size_t slash = path.rfind('/', last);
  const std::size_t first = slash == std::string::npos ? 0 : slash + 1;
  return path.substr(first, last + 1 - first);
}

std::string pathIn(const std::string& folder, std::string_view name) {
  return folder.ends_with('/') ? folder + std::string(name) : folder + "/" + std::string(name);
}

}  // namespace zelvo::platform
