#include "avi/film_length.h"

#include <gtest/gtest.h>

#include <optional>

#include "tests/support/avi_builder.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

/// Of 400 pictures, 0.04 seconds each.
AviBuilder film() { return AviBuilder().interleaved(200, 3000, 800); }

TEST(FilmLength, IsWhatTheMainHeaderSays) {
  MemoryFiles files;
  files.put("/in.avi", film().build());
  const auto opened = files.openForReading("/in.avi");
  EXPECT_DOUBLE_EQ(avi::filmLength(*opened.file).value_or(0), 400 * 0.04);
}

TEST(FilmLength, IsNothingForWhatIsNoFilmOrSaysWhatCannotBe) {
  MemoryFiles files;
  files.put("/none.avi", platform::Bytes(5000));
  EXPECT_EQ(avi::filmLength(*files.openForReading("/none.avi").file), std::nullopt);
  AviBuilder wild = film();
  wild.microSecPerFrame = 0xffffffff;
  files.put("/wild.avi", wild.build());
  EXPECT_EQ(avi::filmLength(*files.openForReading("/wild.avi").file), std::nullopt);
  platform::Bytes cut = film().build();
  cut.resize(40);
  files.put("/cut.avi", cut);
  EXPECT_EQ(avi::filmLength(*files.openForReading("/cut.avi").file), std::nullopt);
}

}  // namespace
}  // namespace zelvo::tests
