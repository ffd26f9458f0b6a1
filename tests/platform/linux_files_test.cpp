#include "platform/linux/linux_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "platform/bytes.h"
#include "tests/platform/ordinary_user.h"
#include "tests/platform/temp_folder.h"

namespace zelvo::tests {
namespace {

class LinuxFiles : public testing::Test {
 protected:
  std::string read(platform::ReadableFile& file, std::uint64_t offset, std::size_t size) {
    platform::Bytes bytes(size);
    result = file.readAt(offset, bytes);
    std::string text;
    for (const std::byte byte : std::span(bytes).first(result.count)) text += static_cast<char>(byte);
    return text;
  }
  platform::IoResult write(platform::WritableFile& file, std::uint64_t offset, std::string_view text) {
    return file.writeAt(offset, std::as_bytes(std::span(text)));
  }

  TempFolder folder;
  platform::linux_::LinuxFiles files;
  platform::IoResult result;
};

TEST_F(LinuxFiles, ReadsAtAnyOffset) {
  const auto opened = files.openForReading(folder.put("a", "0123456789"));
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(read(*opened.file, 0, 4), "0123");
  EXPECT_EQ(read(*opened.file, 6, 4), "6789");
  EXPECT_EQ(read(*opened.file, 3, 1), "3");
}

TEST_F(LinuxFiles, ShortReadAtTheEndIsNoError) {
  const auto opened = files.openForReading(folder.put("a", "0123456789"));
  EXPECT_EQ(read(*opened.file, 8, 100), "89");
  EXPECT_FALSE(result.error);
}

TEST_F(LinuxFiles, ReadBehindTheEndIsEmptyAndNoError) {
  const auto opened = files.openForReading(folder.put("a", "0123456789"));
  for (const std::uint64_t offset : {std::uint64_t{10}, std::uint64_t{1} << 40U, std::uint64_t{1} << 63U, ~0UL}) {
    EXPECT_EQ(read(*opened.file, offset, 100), "") << offset;
    EXPECT_FALSE(result.error) << offset;
  }
}

TEST_F(LinuxFiles, EmptyFileReadsAsNothing) {
  const auto opened = files.openForReading(folder.put("a", ""));
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(read(*opened.file, 0, 100), "");
  EXPECT_EQ(opened.file->size(), 0U);
}

TEST_F(LinuxFiles, SizeIsThatOfTheFileNow) {
  const auto opened = files.openForReading(folder.put("a", "0123"));
  EXPECT_EQ(opened.file->size(), 4U);
  folder.put("a", "0123456789");
  EXPECT_EQ(opened.file->size(), 10U);
}

TEST_F(LinuxFiles, MissingFileIsNotOpened) {
  const auto opened = files.openForReading(folder.path("none"));
  EXPECT_FALSE(opened.file);
  EXPECT_EQ(opened.error, std::errc::no_such_file_or_directory);
}

TEST_F(LinuxFiles, FolderIsRefused) {
  const auto opened = files.openForReading(folder.path());
  EXPECT_FALSE(opened.file);
  EXPECT_EQ(opened.error, std::errc::is_a_directory);
  EXPECT_EQ(files.openForWriting(folder.path()).error, std::errc::is_a_directory);
}

TEST_F(LinuxFiles, FileWithoutReadPermissionIsRefused) {
  const std::string path = folder.put("a", "secret");
  ::chmod(path.c_str(), 0);
  EXPECT_TRUE(holdsForAnOrdinaryUser([&] { return files.openForReading(path).error == std::errc::permission_denied; }));
}

TEST_F(LinuxFiles, OpeningAPipeDoesNotWaitForAWriter) {
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  const auto opened = files.openForReading(folder.path("pipe"));
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(read(*opened.file, 0, 10), "");
  EXPECT_EQ(result.error, std::errc::invalid_seek);
  EXPECT_EQ(opened.file->size(), 0U);
}

TEST_F(LinuxFiles, FailedReadCarriesItsCause) {
  const auto opened = files.openForReading("/proc/self/mem");  // no memory lies at its start
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(read(*opened.file, 0, 10), "");
  EXPECT_EQ(result.error, std::errc::io_error);
}

TEST_F(LinuxFiles, ReadingFollowsLinks) {
  folder.put("a", "0123");
  std::filesystem::create_symlink("a", folder.path("link"));
  const auto opened = files.openForReading(folder.path("link"));
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(read(*opened.file, 0, 10), "0123");
}

TEST_F(LinuxFiles, WritingNeedsAnExistingFile) {
  EXPECT_EQ(files.openForWriting(folder.path("none")).error, std::errc::no_such_file_or_directory);
}

TEST_F(LinuxFiles, OpeningForWritingKeepsTheContentUntilItIsOverwritten) {
  const auto opened = files.openForWriting(folder.put("a", "0123456789"));
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(write(*opened.file, 3, "abc").count, 3U);
  EXPECT_FALSE(opened.file->close());
  EXPECT_EQ(folder.content("a"), "012abc6789");
}

TEST_F(LinuxFiles, WritingBehindTheEndLeavesZerosBetween) {
  const auto opened = files.openForWriting(folder.put("a", "01"));
  EXPECT_FALSE(write(*opened.file, 4, "ab").error);
  EXPECT_EQ(folder.content("a"), std::string("01\0\0ab", 6));
}

TEST_F(LinuxFiles, LargeWriteIsWhole) {
  const std::string text(5000000, 'x');
  const auto opened = files.openForWriting(folder.put("a", ""));
  EXPECT_EQ(write(*opened.file, 0, text).count, text.size());
  EXPECT_EQ(folder.content("a"), text);
}

TEST_F(LinuxFiles, FullDeviceIsAnErrorWithItsCause) {
  const auto opened = files.openForWriting("/dev/full");
  ASSERT_TRUE(opened.file);
  const platform::IoResult written = write(*opened.file, 0, "abc");
  EXPECT_EQ(written.count, 0U);
  EXPECT_EQ(written.error, std::errc::no_space_on_device);
}

TEST_F(LinuxFiles, WriteAtAnOffsetThatCannotBeIsAnError) {
  const auto opened = files.openForWriting(folder.put("a", ""));
  const platform::IoResult written = write(*opened.file, ~0UL, "abc");
  EXPECT_EQ(written.count, 0U);
  EXPECT_TRUE(written.error);
}

TEST_F(LinuxFiles, ReserveMakesTheFileThatLongOrSaysThatItCannot) {
  const auto opened = files.openForWriting(folder.put("a", "01"));
  const std::error_code error = opened.file->reserve(10000);
  if (error) {
    EXPECT_EQ(error, std::errc::operation_not_supported);
    EXPECT_EQ(folder.content("a"), "01");
  } else {
    EXPECT_EQ(folder.content("a"), "01" + std::string(9998, '\0'));
  }
}

TEST_F(LinuxFiles, ReserveOfNothingChangesNothing) {
  const auto opened = files.openForWriting(folder.put("a", "01"));
  EXPECT_FALSE(opened.file->reserve(0));
  EXPECT_EQ(folder.content("a"), "01");
}

TEST_F(LinuxFiles, ReserveOfMoreThanAnyFileIsRefused) {
  const auto opened = files.openForWriting(folder.put("a", "01"));
  EXPECT_EQ(opened.file->reserve(~0UL), std::errc::file_too_large);
  EXPECT_EQ(opened.file->truncate(~0UL), std::errc::file_too_large);
}

TEST_F(LinuxFiles, TruncateCutsAndExtends) {
  const auto opened = files.openForWriting(folder.put("a", "0123456789"));
  EXPECT_FALSE(opened.file->truncate(4));
  EXPECT_EQ(folder.content("a"), "0123");
  EXPECT_FALSE(opened.file->truncate(6));
  EXPECT_EQ(folder.content("a"), std::string("0123\0\0", 6));
}

TEST_F(LinuxFiles, FlushAndCloseSucceedAndClosingAgainDoesNothing) {
  const auto opened = files.openForWriting(folder.put("a", ""));
  EXPECT_FALSE(write(*opened.file, 0, "abc").error);
  EXPECT_FALSE(opened.file->flush());
  EXPECT_FALSE(opened.file->close());
  EXPECT_FALSE(opened.file->close());
  EXPECT_EQ(folder.content("a"), "abc");
}

TEST_F(LinuxFiles, FlushOfADeviceIsNoError) {
  const auto opened = files.openForWriting("/dev/null");
  ASSERT_TRUE(opened.file);
  EXPECT_FALSE(opened.file->flush());
}

TEST_F(LinuxFiles, FailureAfterClosingIsAnswered) {
  const auto opened = files.openForWriting(folder.put("a", ""));
  EXPECT_FALSE(opened.file->close());
  EXPECT_EQ(write(*opened.file, 0, "abc").error, std::errc::bad_file_descriptor);
}

}  // namespace
}  // namespace zelvo::tests
