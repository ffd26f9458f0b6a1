#include "app/counted_files.h"

#include <utility>

namespace zelvo::app {

namespace {

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

platform::Opened<platform::WritableFile> CountedFiles::openForWriting(const std::string& path) {
  auto opened = files_.openForWriting(path);
  restart();
  if (opened.file) opened.file = std::make_unique<CountedFile>(std::move(opened.file), written_);
  return opened;
}

}  // namespace zelvo::app
