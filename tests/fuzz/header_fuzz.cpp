// Any bytes as the front of a film: the headers that survive lie in the file as they are told, keep to their limits, do
// not depend on what stands after the media begin, and whatever their formats say is understood or not.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "salvage/payloads/codec.h"
#include "salvage/payloads/payload_trial.h"
#include "salvage/scan/surviving_headers.h"
#include "tests/support/memory_files.h"

namespace {

using namespace zelvo;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

salvage::SurvivingHeaders headersOf(const platform::Bytes& film) {
  tests::MemoryFiles files;
  files.put("/in.avi", film);
  avi::InputFile input(files.openForReading("/in.avi").file);
  return salvage::survivingHeaders(input);
}

bool areAlike(const salvage::SurvivingStream& one, const salvage::SurvivingStream& other) {
  return one.offset == other.offset && one.type == other.type && one.header == other.header &&
         one.format == other.format && one.data == other.data && one.name == other.name;
}

void checkStream(const salvage::SurvivingStream& stream, const platform::Bytes& film) {
  constexpr std::size_t kChunkHeader = 8;
  constexpr std::size_t kSmallestHeader = 48;
  constexpr std::size_t kSmallestFormat = 14;
  if (stream.header.size() < kSmallestHeader || stream.format.size() < kSmallestFormat) fail("a header is too short");
  const std::uint64_t payload = stream.offset + kChunkHeader;
  if (payload + stream.header.size() > film.size()) fail("a header reaches beyond the file");
  if (!std::equal(stream.header.begin(), stream.header.end(), film.begin() + static_cast<std::ptrdiff_t>(payload)))
    fail("a header is not what stands in the file");
  // Whatever a format says, it is understood or not.
  static_cast<void>(salvage::codecOf(stream));
  static_cast<void>(salvage::pictureFormat(stream));
  static_cast<void>(salvage::soundFormat(stream));
  static_cast<void>(salvage::trialStreamOf(stream));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  platform::Bytes film(bytes.begin(), bytes.end());
  const salvage::SurvivingHeaders found = headersOf(film);
  if (found.streams.size() > salvage::kMaxStreams) fail("too many streams");
  if (found.mediaBegin() > size) fail("the media begin beyond the file");
  for (std::size_t i = 0; i < found.streams.size(); ++i) {
    checkStream(found.streams[i], film);
    if (i > 0 && found.streams[i].offset <= found.streams[i - 1].offset) fail("streams are not in order");
    if (found.media && found.streams[i].offset >= found.media->offset) fail("a stream stands after the media began");
  }
  if (!found.media) return 0;
  constexpr std::size_t kListHeader = 12;
  film.resize(std::min<std::size_t>(film.size(), found.media->offset + kListHeader));
  film.resize(film.size() + 100, std::byte{0x33});
  const salvage::SurvivingHeaders again = headersOf(film);
  if (!again.media || again.media->offset != found.media->offset) fail("the media begin elsewhere");
  if (!std::ranges::equal(found.streams, again.streams, areAlike)) fail("what follows changes the streams");
  return 0;
}
