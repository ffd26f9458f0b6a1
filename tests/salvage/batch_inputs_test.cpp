#include "salvage/batch_inputs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/file_manager.h"
#include "platform/linux/files.h"
#include "tests/support/temp_folder.h"

namespace zelvo::salvage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BatchInputsTest : public testing::Test {
 protected:
  void put(const std::string& name, const std::string& content = "x") { tests::writeFile(folder_ / name, content); }
  [[nodiscard]] std::vector<std::string> below(const std::vector<std::string>& named,
                                               BatchSearch search = {true, false, {}}) {
    found_ = findFilms(named, search, fileManager_, files_, [] { return true; });
    std::vector<std::string> names;
    for (const BatchFilm& film : found_.films) names.push_back(film.below);
    return names;
  }

  const tests::TempFolder folder_;
  platform::linux_::LinuxFileManager fileManager_;
  platform::linux_::LinuxFiles files_;
  BatchInputs found_;
};

TEST_F(BatchInputsTest, FoldersAreSearchedForNamesOfFilmsInAFixedOrder) {
  for (const char* name : {"b.avi", "a.DivX", "sub/z.XVID", "sub/deep/y.avi", "c.txt", "sub.avi.bak", ".avi", "d.Avi"})
    put(name);
  EXPECT_THAT(below({folder_.path()}), ElementsAre("a.DivX", "b.avi", "d.Avi", "sub/z.XVID", "sub/deep/y.avi"));
  EXPECT_EQ(found_.films[3].input, folder_ / "sub/z.XVID");
  EXPECT_TRUE(found_.films[3].isFound);
}

TEST_F(BatchInputsTest, WithoutTheWishAFolderIsTakenAsItWasNamed) {
  put("b.avi");
  EXPECT_THAT(below({folder_.path(), "missing.avi"}, {}), ElementsAre(folder_.path(), "missing.avi"));
}

TEST_F(BatchInputsTest, AnyNameTakesWhatBeginsAsAFilm) {
  put("tape", std::string("RIFF\0\0\0\0AVI LIST", 16));
  put("sound", std::string("RIFF\0\0\0\0WAVEfmt ", 16));
  put("short", "RIFF");
  put("broken.avi", "");
  EXPECT_THAT(below({folder_.path()}, {true, true, {}}), ElementsAre("broken.avi", "tape"));
  EXPECT_THAT(below({folder_.path()}), ElementsAre("broken.avi"));
}

TEST_F(BatchInputsTest, LinksToFoldersAreNotFollowedAndThoseToFilesAre) {
  put("real/one.avi");
  std::filesystem::create_directory_symlink("..", folder_ / "real/loop");
  std::filesystem::create_directory_symlink("real", folder_ / "again");
  std::filesystem::create_symlink("one.avi", folder_ / "real/two.avi");
  std::filesystem::create_symlink("nowhere", folder_ / "real/three.avi");
  EXPECT_THAT(below({folder_.path()}), ElementsAre("real/one.avi", "real/two.avi"));
  EXPECT_THAT(below({folder_ / "again"}), ElementsAre("one.avi", "two.avi"));
}

TEST_F(BatchInputsTest, AFilmThatIsNamedTwiceIsTakenOnce) {
  put("sub/one.avi");
  EXPECT_THAT(below({folder_ / "sub/one.avi", folder_.path(), folder_ / "sub", folder_ / "sub/../sub/one.avi"}),
              ElementsAre(folder_ / "sub/one.avi"));
}

TEST_F(BatchInputsTest, TheOutputFolderAndUnfinishedFilesAreLeftOut) {
  put("one.avi");
  put("saved/one-salvaged.avi");
  put(".zelvo-avi-0123456789abcdef01234567.part", std::string("RIFF\0\0\0\0AVI LIST", 16));
  EXPECT_THAT(below({folder_.path()}, {true, true, folder_ / "saved"}), ElementsAre("one.avi"));
}

TEST_F(BatchInputsTest, DeepFoldersAreEnteredWithoutEnd) {
  std::string name = "x.avi";
  for (int i = 0; i < 300; ++i) name.insert(0, "d/");
  put(name);
  EXPECT_THAT(below({folder_.path()}), ElementsAre(name));
}

TEST_F(BatchInputsTest, AStopEndsTheSearch) {
  put("one.avi");
  EXPECT_THAT(findFilms({folder_.path()}, {true, false, {}}, fileManager_, files_, [] { return false; }).films,
              IsEmpty());
}

TEST_F(BatchInputsTest, FolderThatCannotBeReadIsTold) {
  put("locked/one.avi");
  put("open/two.avi");
  std::filesystem::permissions(folder_ / "locked", std::filesystem::perms::none);
  const auto names = below({folder_.path()});
  std::filesystem::permissions(folder_ / "locked", std::filesystem::perms::owner_all);
  if (::geteuid() == 0) GTEST_SKIP() << "root reads every folder";
  EXPECT_THAT(names, ElementsAre("open/two.avi"));
  EXPECT_THAT(found_.unreadable, ElementsAre(folder_ / "locked"));
}

}  // namespace
}  // namespace zelvo::salvage
