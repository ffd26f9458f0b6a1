/// An output whose written bytes are counted for whoever shows progress. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "platform/files.h"
#include "platform/relaxed.h"

namespace zelvo::engine {

/// Hands everything on to `file`. Several threads may write at once; `written` must outlive it.
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
  std::error_code writeOut(std::uint64_t offset, std::uint64_t size) override { return file_->writeOut(offset, size); }
  std::error_code beginWriteOut(std::uint64_t offset, std::uint64_t size) override {
    return file_->beginWriteOut(offset, size);
  }
  std::error_code flush() override { return file_->flush(); }
  std::error_code close() override { return file_->close(); }

 private:
  std::unique_ptr<platform::WritableFile> file_;
  platform::Relaxed<std::uint64_t>& written_;
};

}  // namespace zelvo::engine
