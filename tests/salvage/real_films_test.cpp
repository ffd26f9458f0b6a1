// Undamaged films of real cameras, from the folder that the environment variable ZELVO_SAMPLES names: what their own
// indexes name is found, and its end is proved. They are only read.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "salvage/scan/index_template.h"
#include "salvage/scan/stream_facts.h"
#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

std::vector<std::filesystem::path> films() {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(std::getenv("ZELVO_SAMPLES"))) {
    std::string extension = entry.path().extension().string();
    std::ranges::transform(extension, extension.begin(), [](unsigned char c) { return std::tolower(c); });
    if (extension == ".avi") paths.push_back(entry.path());
  }
  std::ranges::sort(paths);
  return paths;
}

Bytes contentOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  Bytes bytes;
  appendText(bytes, text);
  return bytes;
}

std::uint32_t number(const Bytes& bytes, std::uint64_t at) {
  return avi::loadLittleEndian32(std::span(bytes).subspan(static_cast<std::size_t>(at)).first<4>());
}

/// What the entries of the tables and standard indexes name: chunks of streams alone.
std::vector<std::uint64_t> namedChunks(const Bytes& bytes, const ScannedFilm& film) {
  std::vector<std::uint64_t> named;
  for (const auto& table : film.scan.tables) {
    const std::uint64_t moviType = film.headers.media->offset + 8;
    const std::uint64_t base = number(bytes, table.begin + 8) >= moviType ? 0 : moviType;
    for (std::uint64_t at = table.begin; at < table.end; at += 16) {
      if (number(bytes, at) != avi::kRec.value) named.push_back(base + number(bytes, at + 8));
    }
  }
  for (const auto& index : film.scan.standardIndexes) {
    for (std::uint64_t at = index.offset + index.kHead; at < index.end(); at += index.entrySize())
      named.push_back(index.baseOffset + number(bytes, at) - 8);
  }
  return named;
}

TEST(RealFilms, EveryChunkThatAnIndexNamesIsATrustedCandidate) {
  if (std::getenv("ZELVO_SAMPLES") == nullptr) GTEST_SKIP() << "skipped: ZELVO_SAMPLES names no folder";
  const auto paths = films();
  ASSERT_FALSE(paths.empty()) << "no AVI files there";
  for (const auto& path : paths) {
    SCOPED_TRACE(path);
    const Bytes bytes = contentOf(path);
    ScannedFilm film(bytes);
    film.run();
    ASSERT_TRUE(film.headers.areComplete());
    ASSERT_TRUE(film.headers.media.has_value());
    const auto named = namedChunks(bytes, film);
    ASSERT_FALSE(named.empty());
    const auto trusted = film.trusted();
    const auto lost = std::ranges::count_if(
        named, [&](std::uint64_t offset) { return !std::ranges::binary_search(trusted, offset); });
    EXPECT_EQ(lost, 0) << "of " << named.size() << ", " << trusted.size() << " trusted of " << film.chunks().size();
    const auto plan = salvage::indexTemplate(*film.input, film.headers, film.codes, film.scan);
    EXPECT_EQ(plan.overlapping, 0U);
    EXPECT_EQ(plan.leftOut, 0U);
    for (const auto& entry : plan.entries) {
      const std::size_t found = film.numberAt(entry.offset);
      ASSERT_NE(found, salvage::ChunkChain::kNone) << entry.offset;
      EXPECT_EQ(film.scan.candidates[found].size(), entry.size) << entry.offset;
      EXPECT_EQ(film.scan.candidates[found].stream(), entry.stream) << entry.offset;
    }
    for (const auto& source : plan.tables) EXPECT_EQ(source.belonging, salvage::Belonging::belongs);
    for (const auto& source : plan.standard) EXPECT_EQ(source.belonging, salvage::Belonging::belongs);
    for (const auto& facts : salvage::learnStreams(film.scan.candidates, film.chain)) {
      RecordProperty(path.filename().string(), std::to_string(facts.chunks) + " chunks, mean " +
                                                   std::to_string(facts.mean) + ", bits " +
                                                   std::to_string(facts.signature.constantBits()));
    }
  }
}

}  // namespace
}  // namespace zelvo::tests
