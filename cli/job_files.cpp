#include "cli/job_files.h"

#include <utility>

namespace zelvo::cli {

namespace {

/// The input, for one more reader.
class SharedInput final : public platform::ReadableFile {
 public:
  explicit SharedInput(std::shared_ptr<platform::ReadableFile> file) : file_(std::move(file)) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    return file_->readAt(offset, into);
  }
  std::uint64_t size() override { return file_->size(); }

 private:
  std::shared_ptr<platform::ReadableFile> file_;
};

/// Counts what is written, by several threads at once.
class CountedFile final : public platform::WritableFile {
 public:
  CountedFile(std::unique_ptr<platform::WritableFile> file, platform::Relaxed<std::uint64_t>& written)
      : file_(std::move(file)), written_(written) {}
  platform::IoResult writeAt(std::uint64_t offset, std::span<const std::byte> from) override {
    const platform::IoResult result = file_->writeAt(offset, from);
    written_.add(result.count);
    return result;
  }
  std::error_code reserve(std::uint64_t size) override { return file_->reserve(size); }
  std::error_code truncate(std::uint64_t size) override { return file_->truncate(size); }
  std::error_code flush() override { return file_->flush(); }
  std::error_code close() override { return file_->close(); }

 private:
  std::unique_ptr<platform::WritableFile> file_;
  platform::Relaxed<std::uint64_t>& written_;
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
  if (opened.file) opened.file = std::make_unique<CountedFile>(std::move(opened.file), written_);
  return opened;
}

}  // namespace zelvo::cli
