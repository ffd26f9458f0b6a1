#include <algorithm>

#include "tests/app/save_bench.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

/// A save after which the rebuilt file does not lie whole at its new place.
class SaveOfLess : public SaveTest {
 protected:
  /// Looks at every place that says so, also once the progress has asked for the completion sheet.
  void expectNotWhole(const std::string& why) {
    EXPECT_EQ(app.screen.savecompletedhead.title(), "The film was not saved whole");
    EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::warning);
    EXPECT_TRUE(app.screen.savecompletedtext.stringValue().starts_with("The copy is incomplete: " + why))
        << app.screen.savecompletedtext.stringValue();
    EXPECT_EQ(app.screen.savedbytestext.stringValue(), app.screen.savecompletedtext.stringValue());
    EXPECT_EQ(app.screen.savedsizelabel.stringValue(), "Not whole");
    runWorkers();
    EXPECT_TRUE(app.isShown(app.screen.savecompletedwindow));
    EXPECT_EQ(app.screen.savecompletedhead.title(), "The film was not saved whole");
  }
};

TEST_F(SaveOfLess, ARebuiltFileThatCannotBeReadIsSavedAsZerosAndNotCalledSaved) {
  arrive(65536);
  app.files.refuse(kScratch1, std::make_error_code(std::errc::permission_denied));

  saveAs(kFolder);

  EXPECT_EQ(app.files.content(kSaved), Bytes(65536));
  expectNotWhole("0.1 MB of the repaired file could not be read: Permission denied. ");
}

TEST_F(SaveOfLess, ARebuiltFileThatIsGoneIsNotCalledSaved) {
  arrive(65536);
  ASSERT_FALSE(app.files.remove(kScratch1));

  saveAs(kFolder);

  EXPECT_TRUE(app.files.content(kSaved).empty());
  expectNotWhole("the repaired file is no longer there. ");
}

TEST_F(SaveOfLess, NoRebuiltFileAtAllIsNotCalledSaved) {
  arrive(65536);
  const std::optional<std::string> none;
  app.controller->setUnipath(none);

  saveAs(kFolder);

  expectNotWhole("the repaired file is no longer there. ");
}

TEST_F(SaveOfLess, ARebuiltFileThatBecameShorterIsNotCalledSaved) {
  arrive(300000);
  app.files.put(kScratch1, app.files.content(kScratch1)).bytes.resize(65536);
  app.files.at(kScratch1).size = 65536;

  saveAs(kFolder);

  EXPECT_EQ(app.files.content(kSaved), app.files.content(kScratch1));
  expectNotWhole("0.2 MB of the repaired file are no longer there. ");
}

TEST_F(SaveOfLess, AReadThatFailsIsToldAndTheRestIsCopied) {
  arrive(400000);
  MemoryFile& rebuilt = app.files.at(kScratch1);
  rebuilt.badReadStart = 70000;
  rebuilt.badReadEnd = 70001;
  rebuilt.readError = std::make_error_code(std::errc::io_error);

  saveAs(kFolder);

  const Bytes saved = app.files.content(kSaved);
  const Bytes whole = rebuilt.bytes;
  EXPECT_TRUE(std::equal(whole.begin() + 98304, whole.end(), saved.begin() + 98304));
  expectNotWhole("28304 bytes of the repaired file could not be read: Input/output error. ");
}

TEST_F(SaveOfLess, TheRebuiltFileIsNotWrittenOverWithItself) {
  arrive(65536);
  const Bytes rebuilt = app.files.content(kScratch1);
  app.fileManager.links[kSaved] = kScratch1;
  app.events.clear();

  saveAs(kFolder);

  EXPECT_EQ(app.takeEvents({"createFile"}), Lines{});
  EXPECT_EQ(app.files.content(kScratch1), rebuilt);
  expectNotWhole("That would overwrite the damaged file itself. ");
}

TEST_F(SaveOfLess, TheNextWholeCopyIsSaidToBeDoneAgain) {
  arrive(65536);
  app.recordingFiles.flushError = std::make_error_code(std::errc::io_error);
  saveAs(kFolder);
  EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::warning);
  app.recordingFiles.flushError = {};
  app.screen.savebutton.setEnabled(true);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.savecompletedhead.title(), "Saving is done");
  EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::done);
  EXPECT_EQ(app.screen.savedsizelabel.stringValue(), "Last saved");
}

TEST_F(SaveOfLess, AFailureOnTheWayToTheMediumIsTold) {
  arrive(8U << 20U);
  app.files.space = 32U << 20U;
  app.recordingFiles.writeOutError = std::make_error_code(std::errc::io_error);

  saveAs(kFolder);

  expectNotWhole("Input/output error. ");
}

TEST_F(SaveOfLess, AWriteThatFailsChangesNoStepAndIsTold) {
  arrive(100000);
  app.files.put(kSaved, {});
  app.files.at(kSaved).badWriteFrom = 40000;
  app.files.at(kSaved).writeError = std::make_error_code(std::errc::no_space_on_device);

  saveAs(kFolder);
  runWorkers();

  EXPECT_TRUE(app.isShown(app.screen.savecompletedwindow));
  EXPECT_TRUE(app.alerts.shown().empty());
  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: No space left on device. Please save again, to another place.");
}

TEST_F(SaveOfLess, ADestinationThatCannotBeOpenedIsTold) {
  arrive();
  app.files.refuse(kSaved, std::make_error_code(std::errc::read_only_file_system));

  saveAs(kFolder);
  runWorkers();

  EXPECT_TRUE(app.isShown(app.screen.savecompletedwindow));
  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: Read-only file system. Please save again, to another place.");
}

TEST_F(SaveOfLess, AFailureOnClosingIsTold) {
  arrive(65536);
  app.files.put(kSaved, {});
  app.files.at(kSaved).closeError = std::make_error_code(std::errc::io_error);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: Input/output error. Please save again, to another place.");
}

TEST_F(SaveOfLess, AFailureOfTheMediumIsTold) {
  arrive(65536);
  app.recordingFiles.flushError = std::make_error_code(std::errc::io_error);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: Input/output error. Please save again, to another place.");
}

}  // namespace
}  // namespace zelvo::tests
