#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "storage/drive_inventory.h"
#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

struct Inventory : testing::Test {
  platform::headless::HeadlessMainQueue queue;
  platform::headless::HeadlessWorkers workers;
  AppBench app{queue, workers};
};

TEST_F(Inventory, InitialDriveListFillsBothArraysAnew) {
  app.storage = std::make_shared<RecordedSystem>(recordedTree("desk.plist"));
  app.controller->responseFindMedia.emplace_back();

  app.controller->initialDriveList();

  storage::Entries media;
  storage::Entries volumes;
  platform::NoPrintSink nobody;
  storage::initialDriveList(*app.storage, *app.storage, media, volumes, nobody);
  EXPECT_FALSE(media.empty());
  EXPECT_EQ(app.controller->responseFindMedia, media);
  EXPECT_EQ(app.controller->finalArrayForVolumes, volumes);
}

TEST_F(Inventory, DumpsAndFailuresArePrinted) {
  app.storage = std::make_shared<RecordedSystem>(platform::PropertyDictionary{{"NoMatching", true}});

  app.controller->initialDriveList();

  const Lines lines = app.events.lines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "print: IOServiceMatching returned a NULL dictionary.\n"), 1);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "print: IOServiceGetMatchingServices returned 0xe00002c2\n"), 1);
  EXPECT_TRUE(app.controller->responseFindMedia.empty());
}

TEST_F(Inventory, VolumeListAppendsTheMountedVolumes) {
  app.storage = std::make_shared<RecordedSystem>(recordedTree("desk.plist"));

  app.controller->volumeList();

  EXPECT_EQ(app.controller->finalArrayForVolumes.size(), app.storage->mountedLocalVolumePaths().size());
  EXPECT_TRUE(app.controller->responseFindMedia.empty());
}

TEST_F(Inventory, TruncateDriveModelNumberTidiesTheTexts) {
  app.controller->responseFindMedia.push_back(storage::Entry{{"device model", "  Disk  "}});

  app.controller->truncateDriveModelNumber();

  const storage::Entry& entry = app.controller->responseFindMedia.front();
  ASSERT_NE(entry.text("device model"), nullptr);
  EXPECT_EQ(*entry.text("device model"), "Disk");
  ASSERT_NE(entry.text("device serial"), nullptr);
  EXPECT_EQ(*entry.text("device serial"), "-");
}

}  // namespace
}  // namespace zelvo::tests
