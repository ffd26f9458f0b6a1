#include "salvage/headers/film_header.h"

#include <algorithm>
#include <utility>

namespace zelvo::salvage {

namespace {

const SeenStream* find(const std::vector<SeenStream>& seen, std::size_t number) {
  const auto found = std::ranges::find_if(seen, [&](const SeenStream& one) { return one.number == number; });
  return found == seen.end() ? nullptr : &*found;
}

/// The number that a stream's super index names in the code of its chunks.
std::optional<std::size_t> numberInSuperIndex(const SurvivingStream& stream) {
  if (!stream.superIndex) return std::nullopt;
  const std::uint32_t code = stream.superIndex->chunkId.value;
  const std::uint32_t tens = (code & 0xffU) - 0x30;
  const std::uint32_t ones = (code >> 8U & 0xffU) - 0x30;
  if (tens > 9 || ones > 9) return std::nullopt;
  return tens * 10 + ones;
}

/// Whether the first survivor may be stream `first`, and the others those after it.
bool mayBegin(const SurvivingHeaders& headers, const std::vector<SeenStream>& seen, std::size_t first) {
  for (std::size_t i = 0; i < headers.streams.size(); ++i) {
    const SurvivingStream& stream = headers.streams[i];
    const SeenStream* chunks = find(seen, first + i);
    if (chunks != nullptr && streamTypeOf(chunks->code) != stream.type) return false;
    const auto named = numberInSuperIndex(stream);
    if (named && *named != first + i) return false;
  }
  return true;
}

/// The number of the first stream whose header survives.
std::size_t firstSurvivor(const SurvivingHeaders& headers, const std::vector<SeenStream>& seen) {
  if (headers.areComplete() || headers.streams.empty()) return 0;
  std::size_t all = headers.streams.size();
  if (headers.main) all = std::max<std::size_t>(all, std::min<std::size_t>(headers.main->streams, kMaxStreams));
  if (!seen.empty()) all = std::max<std::size_t>(all, seen.back().number + 1U);
  const std::size_t last = all - headers.streams.size();
  for (std::size_t first = last + 1; first > 0; --first) {
    if (mayBegin(headers, seen, first - 1)) return first - 1;
  }
  return last;
}

}  // namespace

FilmHeader filmHeader(const SurvivingHeaders& headers, const std::vector<SeenStream>& seen) {
  FilmHeader header{.main = headers.main, .streams = {}, .information = headers.information};
  const std::size_t first = firstSurvivor(headers, seen);
  for (std::size_t i = 0; i < headers.streams.size() && first + i < kMaxStreams; ++i) {
    const auto number = static_cast<std::uint8_t>(first + i);
    const SeenStream* chunks = find(seen, number);
    const avi::FourCC code = chunks != nullptr ? chunks->code : usualCode(headers.streams[i].type, number);
    header.streams.push_back({number, code, headers.streams[i], HeaderOrigin::own});
  }
  return header;
}

std::vector<SeenStream> streamsWithoutHeader(const FilmHeader& header, const std::vector<SeenStream>& seen) {
  std::vector<SeenStream> without;
  std::ranges::copy_if(seen, std::back_inserter(without), [&](const SeenStream& one) {
    return std::ranges::none_of(header.streams, [&](const FilmStream& stream) { return stream.number == one.number; });
  });
  return without;
}

void addStream(FilmHeader& header, FilmStream stream) {
  const auto place =
      std::ranges::find_if(header.streams, [&](const FilmStream& one) { return one.number > stream.number; });
  header.streams.insert(place, std::move(stream));
}

}  // namespace zelvo::salvage
