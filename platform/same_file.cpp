#include "platform/same_file.h"

namespace zelvo::platform {

bool areOneFile(const std::optional<FileAttributes>& one, const std::optional<FileAttributes>& other) {
  return one && other && one->device == other->device && one->identity == other->identity;
}

bool areOneFile(FileManager& fileManager, const std::string& one, const std::optional<std::string>& other) {
  return other && areOneFile(fileManager.attributesFollowingLinks(one), fileManager.attributesFollowingLinks(*other));
}

}  // namespace zelvo::platform
