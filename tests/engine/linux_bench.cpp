#include "tests/engine/linux_bench.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "engine/globals.h"

namespace zelvo::tests {

namespace {

std::string newFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "zelvo-engine-XXXXXX").string();
  return ::mkdtemp(name.data()) == nullptr ? std::string() : name;
}

}  // namespace

LinuxBench::LinuxBench() : folder_(newFolder()) {
  EXPECT_FALSE(folder_.empty()) << "no temporary folder can be made";
  engine::resetGlobals();
  queue.holdRequests(false);
  job = std::make_unique<engine::RepairFile>(
      engine::RepairServices{files, fileManager, movies, workers, queue, sheets, log}, screen.job);
  job->controll = &relay;
}

LinuxBench::~LinuxBench() {
  workers.joinAll();
  engine::resetGlobals();
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

engine::RunEnd LinuxBench::run() {
  engine::path.set(inputPath());
  engine::internalpath.set(outputPath());
  engine::inputfilesize = std::filesystem::file_size(inputPath());
  job->retrieveAudioVideoSamples(engine::RepairFile::newRun());
  workers.joinAll();
  return job->runEnd;
}

platform::Bytes contentOf(const std::string& path) {
  platform::linux_::LinuxFiles files;
  const auto opened = files.openForReading(path);
  if (!opened.file) return {};
  platform::Bytes bytes(static_cast<std::size_t>(opened.file->size()));
  bytes.resize(opened.file->readAt(0, bytes).count);
  return bytes;
}

void writeContent(const std::string& path, std::span<const std::byte> bytes) {
  platform::linux_::LinuxFileManager manager;
  EXPECT_FALSE(manager.createFile(path));
  platform::linux_::LinuxFiles files;
  const auto opened = files.openForWriting(path);
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(opened.file->writeAt(0, bytes).count, bytes.size());
}

}  // namespace zelvo::tests
