// The whole run against the literal transcription, on the bytes as they are. A repair needs more than 512 KiB, so most
// inputs are followed by zero bytes up to there.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/support/literal_comparison.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // See repair_fuzz.cpp.
  static zelvo::tests::LiteralComparison comparison;
  comparison.largestOutput = std::uint64_t{1} << 20U;
  const auto bytes = std::as_bytes(std::span(data, size));
  zelvo::tests::DamagedInput input;
  input.name = "fuzzed file";
  input.bytes.assign(bytes.begin(), bytes.end());
  input.size = size % 8 == 0 ? size : std::max<std::uint64_t>(size, 524289 + size % 2048);
  input.claimedSize = input.size;
  comparison.knownZero = [size](std::uint32_t offset) { return offset >= size; };
  const std::string difference = comparison.wholeRun(input);
  if (!difference.empty()) {
    std::fprintf(stderr, "%s\n", difference.c_str());
    std::abort();
  }
  return 0;
}
