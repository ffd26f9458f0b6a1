#include "app/counted_files.h"

#include <utility>

#include "engine/counted_file.h"

namespace zelvo::app {

platform::Opened<platform::WritableFile> CountedFiles::openForWriting(const std::string& path) {
  auto opened = files_.openForWriting(path);
  restart();
  if (opened.file) opened.file = std::make_unique<engine::CountedFile>(std::move(opened.file), written_);
  return opened;
}

}  // namespace zelvo::app
