#include "cli/job_files.h"

#include <utility>

#include "engine/counted_file.h"

namespace zelvo::cli {

namespace {

/// The input, for one more reader.
class SharedInput final : public platform::ReadableFile {
 public:
  explicit SharedInput(std::shared_ptr<platform::ReadableFile> file) : file_(std::move(file)) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    return file_->readAt(offset, into);
  }
  platform::IoResult readScattered(std::uint64_t offset, std::span<const std::span<std::byte>> pieces) override {
    return file_->readScattered(offset, pieces);
  }
  std::uint64_t size() override { return file_->size(); }

 private:
  std::shared_ptr<platform::ReadableFile> file_;
};

}  // namespace

void JobFiles::handOver(std::string path, std::shared_ptr<platform::ReadableFile> file) {
  inputPath_ = std::move(path);
  input_ = std::move(file);
}

platform::Opened<platform::ReadableFile> JobFiles::openForReading(const std::string& path) {
  if (input_ && path == inputPath_) return {std::make_unique<SharedInput>(input_), {}};
  return files_.openForReading(path);
}

platform::Opened<platform::WritableFile> JobFiles::openForWriting(const std::string& path) {
  auto opened = files_.openForWriting(path);
  if (opened.file) opened.file = std::make_unique<engine::CountedFile>(std::move(opened.file), written_);
  return opened;
}

}  // namespace zelvo::cli
