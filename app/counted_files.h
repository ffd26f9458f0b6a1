/// Files that count what is written through them, so that a wait for the rebuilt file can show how far it is. Bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/relaxed.h"

namespace zelvo::app {

/// Thread: any.
class CountedFiles final : public platform::Files {
 public:
  explicit CountedFiles(platform::Files& files) : files_(files) {}

  [[nodiscard]] platform::Opened<platform::ReadableFile> openForReading(const std::string& path) override {
    return files_.openForReading(path);
  }
  /// The count starts again.
  [[nodiscard]] platform::Opened<platform::WritableFile> openForWriting(const std::string& path) override;

  /// Bytes written to the file opened last.
  [[nodiscard]] std::uint64_t written() const { return written_; }
  void restart() { written_ = 0; }

 private:
  platform::Files& files_;
  platform::Relaxed<std::uint64_t> written_;
};

}  // namespace zelvo::app
