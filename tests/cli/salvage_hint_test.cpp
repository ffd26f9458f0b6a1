// When repair and check name the deep repair.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class SalvageHint : public testing::Test {
 protected:
  [[nodiscard]] std::string errorOf(const std::string& command, const std::string& bytes,
                                    const std::vector<std::string>& options = {}) const {
    writeFile(folder_ / "in.avi", bytes);
    std::vector<std::string> line{command, folder_ / "in.avi"};
    line.insert(line.end(), options.begin(), options.end());
    if (command == "repair") line.emplace_back("--force");
    return runZelvoAvi(line).err;
  }
  [[nodiscard]] std::string hint() const { return "zelvo-avi salvage '" + (folder_ / "in.avi") + "'"; }

  const TempFolder folder_;
};

TEST_F(SalvageHint, FilmsThatNeedNoneGetNone) {
  EXPECT_THAT(errorOf("repair", SmallAvi{}.bytes()), IsEmpty());
  EXPECT_THAT(errorOf("check", SmallAvi{}.bytes()), IsEmpty());
}

TEST_F(SalvageHint, ARefusedFilmGetsItAfterTheReason) {
  const std::string silent = SmallAvi{.hasAudioHeader = false}.bytes();
  for (const char* const command : {"repair", "check"}) {
    const std::string error = errorOf(command, silent);
    EXPECT_THAT(error, HasSubstr("cannot be repaired"));
    EXPECT_THAT(error, HasSubstr(hint()));
    EXPECT_LT(error.find("cannot be repaired"), error.find(hint()));
  }
  EXPECT_THAT(errorOf("check", std::string(5000, 'x')), HasSubstr(hint()));
  EXPECT_THAT(errorOf("check", std::string(500, 'x')), Not(HasSubstr(hint())));
}

TEST_F(SalvageHint, QuietHasNone) {
  EXPECT_THAT(errorOf("check", SmallAvi{.hasAudioHeader = false}.bytes(), {"--quiet"}), Not(HasSubstr(hint())));
}

TEST_F(SalvageHint, JsonHasNone) {
  writeFile(folder_ / "in.avi", SmallAvi{.hasAudioHeader = false}.bytes());
  EXPECT_THAT(runZelvoAvi({"check", "--json", folder_ / "in.avi"}).out, Not(HasSubstr("salvage")));
}

TEST_F(SalvageHint, AFilmOfWhichLittleIsKeptGetsIt) {
  std::string bytes = SmallAvi{}.bytes();
  const std::size_t media = bytes.find("movi");
  // Every third picture's code is lost.
  for (std::size_t i = 0; i < 150; i += 3) bytes[media + 4 + i * (4008 + 408)] = 'x';
  EXPECT_THAT(errorOf("repair", bytes), HasSubstr(hint()));
}

TEST_F(SalvageHint, AFilmWithAThirdStreamGetsIt) {
  std::string bytes = SmallAvi{}.bytes();
  const std::size_t main = bytes.find("avih") + 8;
  bytes[main + 24] = 3;
  EXPECT_THAT(errorOf("check", bytes), HasSubstr(hint()));
}

}  // namespace
}  // namespace zelvo::tests
