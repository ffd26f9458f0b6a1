#include "update/places.h"

namespace zelvo::update {

std::string withoutLastComponent(std::string_view path) {
  const auto withoutSlashes = [](std::string_view text) {
    while (text.size() > 1 && text.ends_with('/')) text.remove_suffix(1);
    return text;
  };
  path = withoutSlashes(path);
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  return std::string(withoutSlashes(path.substr(0, slash == 0 ? 1 : slash)));
}

std::string withoutLastComponents(std::string_view path, int levels) {
  std::string shorter(path);
  for (int level = 0; level < levels; ++level) shorter = withoutLastComponent(shorter);
  return shorter;
}

bool isWriteDeletablePath(platform::FileManager& fileManager, const std::string& path) {
  const std::string parent = withoutLastComponent(path);
  return fileManager.isWritable(path) && fileManager.isDeletable(path) && fileManager.isWritable(parent) &&
         fileManager.isDeletable(parent);
}

std::string withSpacesEscaped(std::string_view address) {
  std::string escaped;
  for (const char character : address) {
    if (character == ' ') {
      escaped += "%20";
    } else {
      escaped += character;
    }
  }
  return escaped;
}

}  // namespace zelvo::update
