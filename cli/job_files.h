/// The files of one run as the repair engine sees them: the input is the file that was opened when the user's choice was
/// looked at, whatever has happened to its name since, and what is written is counted on its way.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/relaxed.h"

namespace zelvo::cli {

/// Thread: any, but for `handOver`, which comes before the run.
class JobFiles final : public platform::Files {
 public:
  explicit JobFiles(platform::Files& files) : files_(files) {}

  /// From now on opening `path` for reading answers `file`.
  void handOver(std::string path, std::shared_ptr<platform::ReadableFile> file);

  [[nodiscard]] platform::Opened<platform::ReadableFile> openForReading(const std::string& path) override;
  [[nodiscard]] platform::Opened<platform::WritableFile> openForWriting(const std::string& path) override;

  /// Bytes written since the last `resetWritten`.
  [[nodiscard]] std::uint64_t written() const { return written_; }
  void resetWritten() { written_ = 0; }

 private:
  platform::Files& files_;
  std::string inputPath_;
  std::shared_ptr<platform::ReadableFile> input_;
  platform::Relaxed<std::uint64_t> written_;
};

}  // namespace zelvo::cli
