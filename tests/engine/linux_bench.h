/// A repair job on real files in a folder of its own, with real worker threads and a screen that nobody watches.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "engine/repair_file.h"
#include "platform/bytes.h"
#include "platform/headless/main_queue.h"
#include "platform/headless/screen.h"
#include "platform/linux/file_manager.h"
#include "platform/linux/files.h"
#include "platform/linux/workers.h"
#include "tests/support/literal_comparison.h"

namespace zelvo::tests {

/// Input at FOLDER/in.avi, output at FOLDER/out.avi. The folder goes with the bench, and so do the globals' values.
class LinuxBench {
 public:
  LinuxBench();
  ~LinuxBench();
  LinuxBench(const LinuxBench&) = delete;
  LinuxBench& operator=(const LinuxBench&) = delete;

  [[nodiscard]] std::string inputPath() const { return folder_ + "/in.avi"; }
  [[nodiscard]] std::string outputPath() const { return folder_ + "/out.avi"; }
  [[nodiscard]] std::string pathOf(const std::string& name) const { return folder_ + "/" + name; }

  /// Repairs what lies at `inputPath`; answers how it ended.
  engine::RunEnd run();

  platform::linux_::LinuxFiles files;
  platform::linux_::LinuxFileManager fileManager;
  platform::linux_::LinuxWorkers workers;
  platform::headless::HeadlessMainQueue queue;
  platform::headless::Screen screen;
  platform::headless::HeadlessSheets sheets{queue, nullptr};
  platform::headless::HeadlessMovieLoader movies;
  platform::headless::HeadlessLog log{nullptr};
  QuietRelay relay;
  std::unique_ptr<engine::RepairFile> job;

 private:
  std::string folder_;
};

[[nodiscard]] platform::Bytes contentOf(const std::string& path);
void writeContent(const std::string& path, std::span<const std::byte> bytes);

}  // namespace zelvo::tests
