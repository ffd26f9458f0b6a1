#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTimer>
#include <filesystem>

#include "platform/qt/folder_listing.h"
#include "platform/qt/folder_model.h"
#include "platform/qt/folder_reader.h"
#include "platform/qt/places.h"
#include "platform/qt/text.h"
#include "tests/platform/qt/panel_bench.h"

namespace zelvo::tests {
namespace {

using platform::qt::attachedDisks;
using platform::qt::breakable;
using platform::qt::FileFilter;
using platform::qt::FolderEntry;
using platform::qt::FolderListing;
using platform::qt::FolderModel;
using platform::qt::FolderReader;
using platform::qt::readFolder;
using testing::ElementsAre;
using testing::IsEmpty;

const FileFilter kFilms = {.files = true, .extensions = {"avi"}};

std::vector<std::string> namesOf(const FolderListing& listing) {
  std::vector<std::string> names;
  for (const FolderEntry& one : listing.entries) names.push_back(one.name);
  return names;
}

FolderListing read(const TempFolder& folder, const FileFilter& filter = kFilms) {
  return readFolder(folder.path(), filter, std::atomic<bool>(false));
}

TEST(FolderListingTest, FoldersComeFirstEachKindByName) {
  const TempFolder folder;
  folder.put("b.avi", "12");
  folder.put("A.avi", "1");
  std::filesystem::create_directory(folder.path("z"));
  std::filesystem::create_directory(folder.path("Y"));
  EXPECT_THAT(namesOf(read(folder)), ElementsAre("Y", "z", "A.avi", "b.avi"));
}

TEST(FolderListingTest, FileHasItsSize) {
  const TempFolder folder;
  folder.put("b.avi", "12");
  const FolderListing listing = read(folder);
  ASSERT_EQ(listing.entries.size(), 1U);
  EXPECT_EQ(listing.entries.front().size, 2U);
  EXPECT_FALSE(listing.entries.front().isFolder);
}

TEST(FolderListingTest, FolderThatCannotBeReadSaysWhy) {
  const TempFolder folder;
  const FolderListing listing = readFolder(folder.path("gone"), kFilms, std::atomic<bool>(false));
  EXPECT_EQ(listing.failure, std::errc::no_such_file_or_directory);
}

TEST(FolderListingTest, FileIsNoFolder) {
  const TempFolder folder;
  const FolderListing listing = readFolder(folder.put("f.avi", ""), kFilms, std::atomic<bool>(false));
  EXPECT_EQ(listing.failure, std::errc::not_a_directory);
}

TEST(FolderListingTest, LinkToAFolderIsAFolder) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.path("real"));
  std::filesystem::create_directory_symlink(folder.path("real"), folder.path("link"));
  EXPECT_THAT(namesOf(read(folder, {.files = false, .extensions = {}})), ElementsAre("link", "real"));
}

TEST(FolderListingTest, AbandonedReadingEnds) {
  const TempFolder folder;
  folder.put("b.avi", "12");
  EXPECT_THAT(readFolder(folder.path(), kFilms, std::atomic<bool>(true)).entries, IsEmpty());
}

TEST(FolderListingTest, FolderOfAndNameOfGoByTheText) {
  using platform::qt::folderOf;
  using platform::qt::nameOf;
  EXPECT_EQ(folderOf("/a/b"), "/a");
  EXPECT_EQ(folderOf("/a//b//"), "/a");
  EXPECT_EQ(folderOf("/a"), "/");
  EXPECT_EQ(folderOf("/"), "/");
  EXPECT_EQ(nameOf("/a/b"), "b");
  EXPECT_EQ(nameOf("/a/b//"), "b");
  EXPECT_EQ(nameOf("/"), "");
}

TEST(FolderModelTest, FoldersStayAboveInEveryOrder) {
  FolderModel model({}, {}, nullptr);
  model.setEntries({{.name = "f", .isFolder = true, .size = 9, .changed = 5, .nameOrder = 1},
                    {.name = "a", .isFolder = false, .size = 30, .changed = 1, .nameOrder = 2},
                    {.name = "b", .isFolder = false, .size = 10, .changed = 9, .nameOrder = 3}});
  const auto names = [&] {
    std::vector<std::string> all;
    for (const FolderEntry& one : model.entries()) all.push_back(one.name);
    return all;
  };
  EXPECT_THAT(names(), ElementsAre("f", "a", "b"));
  model.sort(FolderModel::size, Qt::AscendingOrder);
  EXPECT_THAT(names(), ElementsAre("f", "b", "a"));
  model.sort(FolderModel::changed, Qt::DescendingOrder);
  EXPECT_THAT(names(), ElementsAre("f", "b", "a"));
  model.sort(FolderModel::name, Qt::DescendingOrder);
  EXPECT_THAT(names(), ElementsAre("f", "b", "a"));
}

TEST(FolderReaderTest, ReaderThatIsGoneTellsNothing) {
  PanelBench bench;
  bool told = false;
  auto reader = std::make_unique<FolderReader>(bench.queue);
  reader->read(bench.home.path(), kFilms, [&](FolderListing) { told = true; });
  reader.reset();
  bool second = false;
  FolderReader other(bench.queue);
  other.read(bench.home.path(), kFilms, [&](FolderListing) { second = true; });
  bench.serveUntil([&] { return second; });
  EXPECT_FALSE(told);
}

TEST(FolderReaderTest, OnlyTheLastFolderIsTold) {
  PanelBench bench;
  const std::string wanted = bench.home.make("wanted");
  FolderReader reader(bench.queue);
  std::vector<std::string> told;
  for (const std::string& folder : {bench.home.path(), std::string("/"), wanted}) {
    reader.read(folder, kFilms, [&](FolderListing listing) { told.push_back(listing.folder); });
  }
  bench.serveUntil([&] { return !told.empty(); });
  EXPECT_THAT(told, ElementsAre(wanted));
}

TEST(PlacesTest, AttachedDisksAreThoseWhereDesktopsPutThem) {
  EXPECT_THAT(attachedDisks("proc /proc proc rw 0 0\n"
                            "/dev/sdb1 /media/anna/CAMERA\\040CARD vfat rw 0 0\n"
                            "/dev/sdc1 /run/media/anna/Disk ext4 rw 0 0\n"
                            "/dev/sdc1 /run/media/anna/Disk ext4 rw 0 0\n"
                            "/dev/sdd1 /mnt/usb vfat rw 0 0\n"
                            "/dev/sda1 / ext4 rw 0 0"),
              ElementsAre("/media/anna/CAMERA CARD", "/run/media/anna/Disk", "/mnt/usb"));
}

TEST(PlacesTest, DamagedTableGivesNothing) {
  EXPECT_THAT(attachedDisks("\n/dev/sdb1\n/dev/sdb1 \n"), IsEmpty());
  EXPECT_THAT(attachedDisks("/dev/sdb1 /media/a\\04"), ElementsAre("/media/a\\04"));
}

TEST(BreakableTest, LinesMayEndAfterSlashesAndWithinLongNames) {
  EXPECT_EQ(breakable(QStringLiteral("/a/b")), QStringLiteral("/\u200ba/\u200bb"));
  EXPECT_EQ(breakable(QStringLiteral("short words only")), QStringLiteral("short words only"));
  EXPECT_EQ(breakable(QString(50, QLatin1Char('w'))).count(QChar(0x200b)), 2);
}

TEST(BreakableTest, CharactersStayWhole) {
  QString wide;
  for (int i = 0; i < 30; ++i) wide += QString::fromUcs4(U"\U0001F3AC", 1);
  const QString broken = breakable(wide);
  EXPECT_EQ(QString(broken).remove(QChar(0x200b)), wide);
  for (const QString& part : broken.split(QChar(0x200b))) EXPECT_TRUE(part.isValidUtf16());
}

TEST(LargeFolderTest, IsShownWithoutHoldingUpTheWindow) {
  constexpr int kFiles = 20000;
  constexpr qint64 kLongestGapMilliseconds = 1000;  // about 50 are usual; a busy machine is given room
  PanelBench bench;
  const std::string folder = bench.home.make("many");
  for (int i = 0; i < kFiles; ++i) bench.home.folder().put("many/MVI_" + std::to_string(i) + ".AVI", "");
  const auto panel = bench.panels.openPanel();
  panel->setAllowedFileTypes({"avi"});
  bench.panels.noteInput(folder + "/x.avi");
  QElapsedTimer clock;
  clock.start();
  qint64 last = 0;
  qint64 longest = 0;
  QTimer tick;
  QObject::connect(&tick, &QTimer::timeout, &bench.application, [&] {
    longest = std::max(longest, clock.elapsed() - last);
    last = clock.elapsed();
  });
  tick.start(0);
  panel->beginSheetModalForWindow(bench.window, [](int) {});
  bench.serveUntil([&] { return bench.chooser().browser().isRead(); });
  const qint64 read = clock.elapsed();
  bench.serve();
  EXPECT_EQ(bench.listed().size(), static_cast<std::size_t>(kFiles));
  EXPECT_LT(longest, kLongestGapMilliseconds);
  RecordProperty("milliseconds_until_shown", std::to_string(read));
  RecordProperty("longest_gap_milliseconds", std::to_string(longest));
  std::printf("20,000 files: shown after %lld ms, longest gap %lld ms\n", static_cast<long long>(read),
              static_cast<long long>(longest));
}

}  // namespace
}  // namespace zelvo::tests
