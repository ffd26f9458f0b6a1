// How long a film is, as its own headers say.
#include "avi/film_length.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

#include "tests/support/avi_builder.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

AviBuilder film() { return AviBuilder().interleaved(200, 3000, 800); }

std::optional<double> lengthOf(platform::Bytes bytes) {
  MemoryFiles files;
  files.put("/in.avi", std::move(bytes));
  return avi::filmLength(*files.openForReading("/in.avi").file);
}

/// A main header alone, after `before` other bytes, that claims so many frames of so many microseconds.
platform::Bytes mainHeader(std::size_t before, std::uint32_t frames, std::uint32_t microseconds) {
  platform::Bytes bytes(before, std::byte{0x20});
  appendText(bytes, "avih");
  appendNumber(bytes, 56);
  appendNumber(bytes, microseconds);
  for (int i = 0; i < 3; ++i) appendNumber(bytes, 77);
  appendNumber(bytes, frames);
  return bytes;
}

/// The same with an OpenDML header of its own count after it.
platform::Bytes withOpenDml(std::uint32_t frames, std::uint32_t openDmlFrames) {
  platform::Bytes bytes = mainHeader(0, frames, 40000);
  appendText(bytes, "dmlh");
  appendNumber(bytes, 248);
  appendNumber(bytes, openDmlFrames);
  return bytes;
}

TEST(FilmLength, IsWhatTheMainHeaderSays) { EXPECT_DOUBLE_EQ(lengthOf(film().build()).value_or(0), 400 * 0.04); }

TEST(FilmLength, IsNothingForWhatIsNoFilm) {
  EXPECT_EQ(lengthOf(platform::Bytes(5000)), std::nullopt);
  EXPECT_EQ(lengthOf({}), std::nullopt);
  EXPECT_EQ(lengthOf(mainHeader(12, 0, 40000)), std::nullopt);
}

TEST(FilmLength, PictureIsShownFromAThousandthToTenSeconds) {
  EXPECT_EQ(lengthOf(mainHeader(12, 100, 999)), std::nullopt);
  EXPECT_DOUBLE_EQ(lengthOf(mainHeader(12, 100, 1000)).value_or(0), 0.1);
  EXPECT_DOUBLE_EQ(lengthOf(mainHeader(12, 100, 10000000)).value_or(0), 1000.0);
  EXPECT_EQ(lengthOf(mainHeader(12, 100, 10000001)), std::nullopt);
}

TEST(FilmLength, HeaderMustBeThereUpToItsFrames) {
  platform::Bytes bytes = mainHeader(12, 100, 40000);
  EXPECT_DOUBLE_EQ(lengthOf(bytes).value_or(0), 4.0);
  bytes.pop_back();
  EXPECT_EQ(lengthOf(bytes), std::nullopt);
}

TEST(FilmLength, HeaderIsLookedForInTheFirst16KiB) {
  EXPECT_DOUBLE_EQ(lengthOf(mainHeader(16384 - 28, 100, 40000)).value_or(0), 4.0);
  EXPECT_EQ(lengthOf(mainHeader(16384 - 27, 100, 40000)), std::nullopt);
}

TEST(FilmLength, LargerCountOfFramesIsTaken) {
  EXPECT_DOUBLE_EQ(lengthOf(withOpenDml(100, 250)).value_or(0), 10.0);
  EXPECT_DOUBLE_EQ(lengthOf(withOpenDml(250, 100)).value_or(0), 10.0);
  EXPECT_DOUBLE_EQ(lengthOf(withOpenDml(0, 100)).value_or(0), 4.0);
}

TEST(FilmLength, OpenDmlHeaderThatIsCutShortDoesNotCount) {
  platform::Bytes bytes = withOpenDml(100, 250);
  bytes.pop_back();
  EXPECT_DOUBLE_EQ(lengthOf(bytes).value_or(0), 4.0);
}

}  // namespace
}  // namespace zelvo::tests
