// Films whose palette changes: what becomes of the chunks "00pc" from the damaged bytes to the film that is written.
#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "avi/chunk_codes.h"
#include "tests/salvage/made_film.h"
#include "tests/salvage/salvage_bench.h"
#include "tests/salvage/written_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::SlotState;

constexpr std::size_t kPictures = 40;

/// Pictures of eight bits with sound; before every tenth picture the palette changes.
struct PaletteFilm {
  explicit PaletteFilm(bool withIndex) {
    AviBuilder builder;
    builder.videoHandler = builder.videoCompression = "MRLE";
    builder.withIndex = withIndex;
    for (std::size_t i = 0; i < kPictures; ++i) {
      if (i % 10 == 5) builder.chunks.push_back({"00pc", 4 + 4 * 64});
      builder.chunks.push_back({"00db", static_cast<std::uint32_t>(700 + 37 * (i * i % 23))});
      builder.chunks.push_back({"01wb", 320});
    }
    bytes = builder.build();
    headers = chunkOffsets(builder);
    for (std::size_t i = 0; i < headers.size(); ++i) {
      codes.emplace_back(builder.chunks[i].code);
      const Bytes content = noise(builder.chunks[i].size, static_cast<unsigned>(i));
      std::ranges::copy(content, bytes.begin() + static_cast<std::ptrdiff_t>(headers[i]) + 8);
    }
    overwriteNumber(bytes, positionOf("avih") + 24, kPictures);
    overwriteNumber(bytes, positionOf("vids") + 32, kPictures);
    const std::size_t sound = positionOf("auds");
    overwriteNumber(bytes, sound + 20, 1);           // dwScale
    overwriteNumber(bytes, sound + 24, 8000);        // dwRate
    overwriteNumber(bytes, sound + 44, 1);           // dwSampleSize
    overwriteNumber(bytes, sound + 64, 0x00010001);  // wFormatTag, nChannels
    overwriteNumber(bytes, sound + 68, 8000);        // nSamplesPerSec
    overwriteNumber(bytes, sound + 76, 0x00080001);  // nBlockAlign, wBitsPerSample
  }
  [[nodiscard]] std::size_t positionOf(std::string_view code) const {
    Bytes letters;
    appendText(letters, code);
    return static_cast<std::size_t>(std::search(bytes.begin(), bytes.end(), letters.begin(), letters.end()) -
                                    bytes.begin());
  }
  /// The number of the chunk that changes the palette so often.
  [[nodiscard]] std::size_t palette(std::size_t number) const {
    std::size_t at = 0;
    while (codes[at] != "00pc" || number-- > 0) ++at;
    return at;
  }

  Bytes bytes;
  std::vector<std::uint64_t> headers;
  std::vector<std::string> codes;
};

/// A whole run, and the streams' chunks of the film that it wrote, by their codes.
struct SalvagedFilm {
  explicit SalvagedFilm(const PaletteFilm& film) : bench(film.bytes) {
    report = bench.perform();
    avi::Outline(
        *bench.files.openForReading("/out.avi").file, notes, [] { return false; }, true)
        .walk();
    const Bytes& out = bench.files.content("/out.avi");
    for (const avi::OutlineItem& chunk : notes.chunks) {
      if (avi::isStreamData(chunk.id)) codes.push_back(textAt(out, chunk.offset, 4));
    }
  }

  SalvageBench bench;
  salvage::SalvageReport report;
  OutlineNotes notes;
  std::vector<std::string> codes;
};

TEST(PaletteFilms, ChangesOfThePaletteStayWhereTheyAre) {
  for (const bool withIndex : {true, false}) {
    const PaletteFilm film(withIndex);
    const SalvagedFilm salvaged(film);
    EXPECT_EQ(salvaged.codes, film.codes);
    EXPECT_THAT(salvaged.notes.problems, testing::IsEmpty());
    EXPECT_EQ(fieldOf(salvaged.notes.mainHeader, "dwTotalFrames"), kPictures);
    EXPECT_EQ(salvaged.report.verdict, withIndex ? salvage::SalvageVerdict::clean : salvage::SalvageVerdict::repaired);
    EXPECT_NEAR(salvaged.report.streams[0].all().seconds, kPictures * 0.04, 1e-9);
  }
}

TEST(PaletteFilms, OneThatIsHurtIsLeftOutAndThePicturesStay) {
  for (const bool withIndex : {true, false}) {
    PaletteFilm film(withIndex);
    const std::size_t hurt = film.palette(1);
    const auto from = film.bytes.begin() + static_cast<std::ptrdiff_t>(film.headers[hurt]);
    film.bytes.erase(from + 50, from + 111);
    film.codes.erase(film.codes.begin() + static_cast<std::ptrdiff_t>(hurt));
    EXPECT_EQ(SalvagedFilm(film).codes, film.codes) << withIndex;
  }
}

TEST(PaletteFilms, LostPicturesAreCountedWithoutThem) {
  PaletteFilm film(false);
  const std::size_t palette = film.palette(2);
  // Two pictures, a change of the palette, two sounds.
  std::fill(film.bytes.begin() + static_cast<std::ptrdiff_t>(film.headers[palette - 2]),
            film.bytes.begin() + static_cast<std::ptrdiff_t>(film.headers[palette + 3]), std::byte{0xee});
  const SalvagedFilm salvaged(film);
  EXPECT_EQ(std::ranges::count(salvaged.codes, "00db"), static_cast<std::ptrdiff_t>(kPictures));
  EXPECT_EQ(std::ranges::count(salvaged.codes, "01wb"), static_cast<std::ptrdiff_t>(kPictures));
  EXPECT_EQ(std::ranges::count(salvaged.codes, "00pc"), 3);
}

}  // namespace
}  // namespace zelvo::tests
