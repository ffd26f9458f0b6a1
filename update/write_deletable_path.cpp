#include "update/write_deletable_path.h"

#include "update/path_components.h"

namespace zelvo::update {

bool isWriteDeletablePath(platform::FileManager& fileManager, const std::string& path) {
  const std::string parent = withoutLastComponent(path);
  return fileManager.isWritable(path) && fileManager.isDeletable(path) && fileManager.isWritable(parent) &&
         fileManager.isDeletable(parent);
}

}  // namespace zelvo::update
