#include "tests/cli/engine_run.h"

#include <memory>

#include "engine/repair.h"
#include "platform/headless/screen.h"
#include "platform/linux/file_manager.h"
#include "platform/linux/files.h"
#include "platform/linux/workers.h"

namespace zelvo::tests {

namespace {

class Silent final : public engine::RepairObserver {
 public:
  [[nodiscard]] platform::Log& log() override { return log_; }

 private:
  platform::headless::HeadlessLog log_{nullptr};
};

class PlainOutput final : public engine::OutputMaker {
 public:
  explicit PlainOutput(std::string path) : path_(std::move(path)) {}
  [[nodiscard]] Made make(std::uint64_t) override {
    platform::linux_::LinuxFileManager fileManager;
    if (const std::error_code error = fileManager.createFile(path_)) return {.file = nullptr, .error = error};
    auto opened = platform::linux_::LinuxFiles().openForWriting(path_);
    file_ = std::move(opened.file);
    return {.file = file_.get(), .error = opened.error};
  }
  [[nodiscard]] std::error_code close() override { return file_->close(); }

 private:
  const std::string path_;
  std::unique_ptr<platform::WritableFile> file_;
};

}  // namespace

bool repairWithEngine(const std::string& input, const std::string& output) {
  const auto opened = platform::linux_::LinuxFiles().openForReading(input);
  if (!opened.file) return false;
  platform::linux_::LinuxWorkers workers;
  platform::CancelMark cancel;
  Silent observer;
  PlainOutput maker(output);
  const engine::RepairReport report =
      engine::repair({*opened.file, opened.file->size(), observer, cancel, workers}, maker);
  return report.end == engine::RunEnd::rebuilt && !report.writeFailure;
}

}  // namespace zelvo::tests
