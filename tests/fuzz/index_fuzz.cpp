// Any bytes as what stands after a film's headers: the scan and the indexes that it finds. Candidates and entries come
// in order, keep to their limits, and do not depend on how much is read at a time.
#include <cstdio>
#include <cstdlib>

#include "salvage/scan/index_template.h"
#include "tests/support/memory_files.h"

namespace {

using namespace zelvo;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

salvage::MediaScan scan(avi::InputFile& input, const salvage::StreamCodes& codes, std::size_t window) {
  salvage::ScanLimits limits;
  limits.windowSize = window;
  return salvage::scanMedia(
      input, 0, codes, [] { return false; }, limits);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  tests::MemoryFiles files;
  files.put("/in.avi", platform::Bytes(bytes.begin(), bytes.end()));
  avi::InputFile input(files.openForReading("/in.avi").file);
  const salvage::SurvivingHeaders headers = salvage::survivingHeaders(input);
  const salvage::StreamCodes codes(headers);
  const salvage::MediaScan found = scan(input, codes, std::size_t{1} << 18U);
  const salvage::MediaScan again = scan(input, codes, 8192);
  if (found.candidates.size() != again.candidates.size() || found.tables.size() != again.tables.size() ||
      found.standardIndexes.size() != again.standardIndexes.size())
    fail("another window finds something else");
  for (std::size_t i = 0; i < found.candidates.size(); ++i) {
    const auto& candidate = found.candidates[i];
    if (candidate.offset() != again.candidates[i].offset() || candidate.size() != again.candidates[i].size())
      fail("another window finds another candidate");
    if (i > 0 && candidate.offset() <= found.candidates[i - 1].offset()) fail("candidates are not in order");
    if (candidate.offset() + 8 > size) fail("a candidate reaches beyond the file");
  }
  constexpr std::size_t kFew = 100;
  for (const std::size_t most : {salvage::kMaxTemplateEntries, kFew}) {
    const salvage::IndexTemplate index = salvage::indexTemplate(input, headers, codes, found, most);
    if (index.entries.size() > most) fail("more entries than may be");
    for (std::size_t i = 1; i < index.entries.size(); ++i) {
      if (index.entries[i].offset < index.entries[i - 1].end()) fail("entries overlap");
    }
  }
  return 0;
}
