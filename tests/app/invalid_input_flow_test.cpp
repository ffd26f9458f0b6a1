#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using InvalidInput = FlowTest;

TEST_F(InvalidInput, ThatIsNoFilmIsSaidToBeNone) {
  app.start();
  app.choose(platform::Bytes(2000));
  repairWhole();
  EXPECT_EQ(app.screen.invalidfilehead.title(), "This is not an AVI film");
  EXPECT_TRUE(app.screen.invalidfiletext.stringValue().starts_with("The beginning of the file does not look like"));
}

TEST_F(InvalidInput, ThatVanishedIsSaidToBeGone) {
  app.start();
  app.choose(smallAvi());
  ASSERT_FALSE(app.files.remove(kInput));
  repairWhole();
  EXPECT_TRUE(app.isShown(app.screen.invalidfilewindow));
  EXPECT_EQ(app.screen.invalidfilehead.title(), "This film is no longer there");
  EXPECT_EQ(app.screen.invalidfiletext.stringValue(),
            "There is no such film. It may have been moved, renamed or removed.");
}

TEST_F(InvalidInput, ThatCannotBeOpenedIsSaidToBeUnreadable) {
  app.start();
  app.choose(smallAvi());
  app.files.refuse(kInput, std::make_error_code(std::errc::permission_denied));
  repairWhole();
  EXPECT_EQ(app.screen.invalidfilehead.title(), "This film cannot be read");
  EXPECT_EQ(app.screen.invalidfiletext.stringValue(),
            "The system says: Permission denied. Nothing was changed in your file.");
}

TEST_F(InvalidInput, WhoseBeginningCannotBeReadIsSaidToBeUnreadable) {
  app.start();
  MemoryFile& input = app.choose(smallAvi());
  input.badReadStart = 0;
  input.badReadEnd = 20000;
  input.readError = std::make_error_code(std::errc::io_error);
  repairWhole();
  EXPECT_EQ(app.screen.invalidfilehead.title(), "This film cannot be read");
  EXPECT_EQ(app.screen.invalidfiletext.stringValue(),
            "The system says: Input/output error. Nothing was changed in your file.");
}

TEST_F(InvalidInput, ThatIsALinkIsSaidToBeOne) {
  app.start();
  app.files.put("/films/real.avi", smallAvi());
  app.fileManager.links[kInput] = "/films/real.avi";
  ASSERT_TRUE(app.controller->chooseFile(kInput));
  repairWhole();
  EXPECT_TRUE(app.isShown(app.screen.invalidfilewindow));
  EXPECT_EQ(app.screen.invalidfilehead.title(), "This is only a link to a film");
  EXPECT_EQ(app.screen.invalidfiletext.stringValue(),
            "Please choose the film itself. It leads to /films/real.avi. Nothing was changed in your file.");
}

TEST_F(InvalidInput, ThatIsALongLinkIsJudgedByWhatItHolds) {
  app.start();
  app.files.put(kInput, platform::Bytes(2000));
  for (const std::size_t length : {1023U, 1024U}) {
    app.fileManager.links[kInput] = std::string(length, 'x');
    ASSERT_TRUE(app.controller->chooseFile(kInput));
    repairWhole();
    EXPECT_EQ(app.screen.invalidfilehead.title(),
              length < 1024 ? "This is only a link to a film" : "This is not an AVI film");
    app.press(app.screen.invalidfileokbutton);
  }
}

TEST_F(InvalidInput, TheNextOneIsJudgedAnew) {
  app.start();
  app.choose(smallAvi());
  ASSERT_FALSE(app.files.remove(kInput));
  repairWhole();
  app.press(app.screen.invalidfileokbutton);
  app.choose(platform::Bytes(2000));
  repairWhole();
  EXPECT_EQ(app.screen.invalidfilehead.title(), "This is not an AVI film");
}

}  // namespace
}  // namespace zelvo::tests
