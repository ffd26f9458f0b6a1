// Several inputs in one command: no output takes the place of any of them.
#include "cli/command_inputs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/file_manager.h"
#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using cli::CommandInputs;

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class InputsOfACommand : public testing::Test {
 protected:
  [[nodiscard]] std::optional<std::string> at(const std::vector<std::string>& inputs, const std::string& output) {
    return CommandInputs(inputs, fileManager_).at(output);
  }

  const TempFolder folder_;
  platform::linux_::LinuxFileManager fileManager_;
};

TEST_F(InputsOfACommand, OutputOfAnotherNameIsNone) {
  writeFile(folder_ / "a.avi", "a");
  writeFile(folder_ / "b.avi", "b");
  EXPECT_EQ(at({folder_ / "a.avi"}, folder_ / "b.avi"), std::nullopt);
  EXPECT_EQ(at({folder_ / "a.avi"}, folder_ / "none.avi"), std::nullopt);
  EXPECT_EQ(at({}, folder_ / "a.avi"), std::nullopt);
}

TEST_F(InputsOfACommand, OneFileUnderTwoNamesIsFound) {
  writeFile(folder_ / "a.avi", "a");
  fs::create_hard_link(folder_ / "a.avi", folder_ / "hard.avi");
  fs::create_symlink("a.avi", folder_ / "link.avi");
  fs::create_symlink("link.avi", folder_ / "link of link.avi");
  for (const char* name : {"hard.avi", "link.avi", "link of link.avi"}) {
    EXPECT_EQ(at({folder_ / "a.avi"}, folder_ / name), folder_ / "a.avi") << name;
    EXPECT_EQ(at({folder_ / name}, folder_ / "a.avi"), folder_ / name) << name;
  }
}

TEST_F(InputsOfACommand, PlaceOfAnInputIsFoundHoweverItIsWritten) {
  fs::create_directory(folder_ / "dir");
  fs::create_directory_symlink("dir", folder_ / "other");
  // Nothing is there yet, so only the place can be compared.
  EXPECT_EQ(at({folder_ / "dir/a.avi"}, folder_ / "dir/a.avi"), folder_ / "dir/a.avi");
  EXPECT_EQ(at({folder_ / "dir/a.avi"}, folder_ / "dir/../dir//a.avi"), folder_ / "dir/a.avi");
  EXPECT_EQ(at({folder_ / "dir/a.avi"}, folder_ / "other/a.avi"), folder_ / "dir/a.avi");
  EXPECT_EQ(at({folder_ / "dir/a.avi"}, folder_ / "a.avi"), std::nullopt);
  EXPECT_EQ(at({folder_ / "dir/a.avi"}, folder_ / "other/b.avi"), std::nullopt);
}

TEST_F(InputsOfACommand, PathIsFoundWhereNotEvenTheFolderExists) {
  EXPECT_EQ(at({folder_ / "no/a.avi"}, folder_ / "no/a.avi"), folder_ / "no/a.avi");
  EXPECT_EQ(at({folder_ / "no/a.avi"}, folder_ / "none/a.avi"), std::nullopt);
}

TEST_F(InputsOfACommand, InputIsRememberedAsItWas) {
  writeFile(folder_ / "a.avi", "a");
  const CommandInputs inputs({folder_ / "a.avi"}, fileManager_);
  fs::rename(folder_ / "a.avi", folder_ / "moved.avi");
  EXPECT_EQ(inputs.at(folder_ / "moved.avi"), folder_ / "a.avi");
}

TEST_F(InputsOfACommand, OwnInputIsLeftToTheRulesOfOneOutput) {
  writeFile(folder_ / "a.avi", "a");
  fs::create_hard_link(folder_ / "a.avi", folder_ / "hard.avi");
  const CommandInputs inputs({folder_ / "a.avi", folder_ / "hard.avi"}, fileManager_);
  EXPECT_EQ(inputs.refusal(folder_ / "a.avi", folder_ / "a.avi"), std::nullopt);
  EXPECT_EQ(inputs.refusal(folder_ / "hard.avi", folder_ / "a.avi"), std::nullopt);
}

// ---- The program ----

class SeveralInputs : public testing::Test {
 protected:
  void SetUp() override {
    writeFile(first_, firstBytes_);
    writeFile(second_, secondBytes_);
  }
  void TearDown() override {
    EXPECT_TRUE(readFile(first_) == firstBytes_) << "the first input was changed";
    EXPECT_TRUE(readFile(second_) == secondBytes_) << "the second input was changed";
    for (const std::string& name : folder_.names()) EXPECT_FALSE(name.starts_with(".")) << name << " was left";
  }

  const TempFolder folder_;
  const std::string first_ = folder_ / "a.avi";
  const std::string second_ = folder_ / "a-repaired.avi";
  const std::string firstBytes_ = SmallAvi{}.bytes();
  const std::string secondBytes_ = SmallAvi{.frames = 160}.bytes();
};

TEST_F(SeveralInputs, ForceNeverReplacesAnotherInput) {
  const Ended ended = runZelvoAvi({"repair", "--force", first_, second_});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr(first_ + " is not repaired: its output would be " + second_));
  EXPECT_THAT(ended.out, AllOf(HasSubstr("2 inputs: 1 repaired, 1 failed."), HasSubstr("160 chunks")));
  EXPECT_TRUE(fs::exists(folder_ / "a-repaired-repaired.avi")) << "the other one is done";
}

TEST_F(SeveralInputs, OrderMakesNoDifference) {
  const Ended ended = runZelvoAvi({"repair", "--force", second_, first_});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr(first_ + " is not repaired"));
  EXPECT_TRUE(fs::exists(folder_ / "a-repaired-repaired.avi"));
}

TEST_F(SeveralInputs, WithoutForceTheSameIsSaid) {
  const Ended ended = runZelvoAvi({"repair", first_, second_});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("which is an input of the same command"), Not(HasSubstr("--force"))));
}

TEST_F(SeveralInputs, OutputThatIsALinkToAnotherInputIsRefusedWithItsName) {
  const std::string other = folder_ / "b.avi";
  writeFile(other, secondBytes_);
  fs::remove(second_);
  fs::create_symlink("b.avi", second_);

  const Ended ended = runZelvoAvi({"repair", "-f", first_, other});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, AllOf(HasSubstr(first_), HasSubstr(second_), HasSubstr("under the name " + other)));
  EXPECT_TRUE(fs::is_symlink(second_));
}

TEST_F(SeveralInputs, OutputThatIsAHardLinkToAnotherInputIsRefused) {
  const std::string other = folder_ / "b.avi";
  fs::create_hard_link(second_, other);

  const Ended ended = runZelvoAvi({"repair", "-f", first_, other});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_TRUE(fs::equivalent(second_, other));
}

TEST_F(SeveralInputs, InputThatIsALinkInTheOutputsPlaceIsRefused) {
  fs::rename(second_, folder_ / "b.avi");
  fs::create_symlink("b.avi", second_);

  const Ended ended = runZelvoAvi({"repair", "-f", first_, second_});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_TRUE(fs::is_symlink(second_));
}

TEST_F(SeveralInputs, OutputFolderThatHoldsAnInputIsJudgedToo) {
  fs::create_directory(folder_ / "dir");
  fs::create_hard_link(first_, folder_ / "dir/a.avi");

  const Ended ended =
      runZelvoAvi({"repair", "-f", "--output-dir", folder_.path() + "/./", folder_ / "dir/a.avi", second_});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("dir/a.avi is not repaired"));
}

TEST_F(SeveralInputs, InputInTheOutputsPlaceThatIsNotThereYetIsNotMade) {
  const std::string missing = folder_ / "a-repaired-repaired.avi";

  const Ended ended = runZelvoAvi({"repair", second_, missing});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, AllOf(HasSubstr(second_ + " is not repaired"), HasSubstr("there is no file named")));
  EXPECT_FALSE(fs::exists(missing));
}

TEST_F(SeveralInputs, RefusedInputIsTheJsonsReason) {
  const Ended ended = runZelvoAvi({"repair", "--json", "-f", first_, second_});

  EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"failed\",\"reason\":\"" + first_ + " is not repaired"));
}

}  // namespace
}  // namespace zelvo::tests
