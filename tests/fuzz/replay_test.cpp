// Runs a fuzz target on every file of its corpus, without a fuzzer. A target that finds a difference ends the process.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace zelvo::tests {
namespace {

// The suite's name is a macro, and has to be expanded before the framework sees it.
#define ZELVO_REPLAY_TEST(suite) TEST(suite, RunsThroughItsCorpus)

ZELVO_REPLAY_TEST(ZELVO_FUZZ_SUITE) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(ZELVO_FUZZ_CORPUS)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  ASSERT_GE(paths.size(), 10U) << "no corpus at " << ZELVO_FUZZ_CORPUS;
  for (const auto& path : paths) {
    SCOPED_TRACE(path);
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::vector<std::uint8_t> bytes(content.begin(), content.end());
    EXPECT_EQ(LLVMFuzzerTestOneInput(bytes.data(), bytes.size()), 0);
  }
}

}  // namespace
}  // namespace zelvo::tests
