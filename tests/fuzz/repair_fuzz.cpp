// The scan and the writer against the literal transcription: any difference in tables, sizes, failures or a byte of the
// output ends the process.
#include <cstdio>
#include <cstdlib>

#include "tests/fuzz/repair_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // One for the whole process, so that what an input leaves behind would show; made here, it goes before the engine's
  // own globals do.
  static zelvo::tests::LiteralComparison comparison;
  comparison.largestOutput = std::uint64_t{1} << 20U;
  const auto given = zelvo::tests::decodeRepairInput(std::as_bytes(std::span(data, size)));
  const std::string difference = comparison.scanAndWrite(given.input, given.stops);
  if (!difference.empty()) {
    std::fprintf(stderr, "%s\n", difference.c_str());
    std::abort();
  }
  return 0;
}
