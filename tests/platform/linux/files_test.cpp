#include "platform/linux/files.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "platform/bytes.h"
#include "platform/linux/descriptor.h"
#include "tests/platform/linux/ordinary_user.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

class LinuxFiles : public testing::Test {
 protected:
  static std::string textOf(std::span<const std::byte> bytes) {
    std::string text;
    for (const std::byte byte : bytes) text += static_cast<char>(byte);
    return text;
  }
  std::string read(platform::ReadableFile& file, std::uint64_t offset, std::size_t size) {
    platform::Bytes bytes(size);
    result = file.readAt(offset, bytes);
    return textOf(std::span(bytes).first(result.count));
  }
  /// What pieces of these sizes hold afterwards, "." where nothing was read.
  std::vector<std::string> readScattered(platform::ReadableFile& file, std::uint64_t offset,
                                         const std::vector<std::size_t>& sizes) {
    std::vector<platform::Bytes> bytes;
    for (const std::size_t size : sizes) bytes.emplace_back(size, std::byte{'.'});
    const std::vector<std::span<std::byte>> pieces(bytes.begin(), bytes.end());
    result = file.readScattered(offset, pieces);
    std::vector<std::string> texts;
    for (const platform::Bytes& piece : bytes) texts.push_back(textOf(piece));
    return texts;
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

TEST_F(LinuxFiles, ScatteredReadFillsOnePieceAfterTheOther) {
  const auto opened = files.openForReading(folder.put("a", "0123456789"));
  EXPECT_EQ(readScattered(*opened.file, 1, {3, 0, 1, 2}), (std::vector<std::string>{"123", "", "4", "56"}));
  EXPECT_EQ(result.count, 6U);
  EXPECT_EQ(readScattered(*opened.file, 7, {2, 2, 2}), (std::vector<std::string>{"78", "9.", ".."}));
  EXPECT_EQ(result.count, 3U);
  EXPECT_FALSE(result.error);
  EXPECT_EQ(readScattered(*opened.file, 5, {}), std::vector<std::string>{});
  EXPECT_EQ(result.count, 0U);
}

TEST_F(LinuxFiles, ScatteredReadTakesMorePiecesThanTheSystemDoesAtATime) {
  std::string text;
  std::vector<std::size_t> sizes;
  std::vector<std::string> expected;
  for (int i = 0; i < 5000; ++i) {
    sizes.push_back(static_cast<std::size_t>(i) % 7);
    expected.push_back(std::string(sizes.back(), static_cast<char>('a' + i % 26)));
    text += expected.back();
  }
  const auto opened = files.openForReading(folder.put("a", text));
  EXPECT_EQ(readScattered(*opened.file, 0, sizes), expected);
  EXPECT_EQ(result.count, text.size());
}

TEST_F(LinuxFiles, FailedScatteredReadCarriesItsCause) {
  const auto opened = files.openForReading("/proc/self/mem");  // no memory lies at its start
  readScattered(*opened.file, 0, {4, 4});
  EXPECT_EQ(result.count, 0U);
  EXPECT_EQ(result.error, std::errc::io_error);
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

TEST_F(LinuxFiles, WhatLiesInMemoryIsReadAtOnce) {
  const platform::linux_::Descriptor memory(::memfd_create("film", MFD_CLOEXEC));
  ASSERT_TRUE(memory.isOpen());
  ASSERT_EQ(::write(memory.number(), "film", 4), 4);
  const auto opened = files.openForReading("/proc/self/fd/" + std::to_string(memory.number()));
  ASSERT_NE(opened.file, nullptr);
  platform::Bytes bytes(8);
  ASSERT_EQ(opened.file->readAtOnce(1, bytes), 3U);
  EXPECT_EQ(textOf(std::span(bytes).first(3)), "ilm");
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

TEST_F(LinuxFiles, WritesOutWhatWasWrittenAndKeepsIt) {
  const auto opened = files.openForWriting(folder.put("a", ""));
  ASSERT_TRUE(opened.file);
  EXPECT_FALSE(write(*opened.file, 0, "0123456789").error);

  EXPECT_FALSE(opened.file->writeOut(0, 10));
  EXPECT_FALSE(opened.file->writeOut(3, 0));

  EXPECT_EQ(folder.content("a"), "0123456789");
}

TEST_F(LinuxFiles, WritingOutOfAClosedFileAnswersWhy) {
  const auto opened = files.openForWriting(folder.put("a", "0123456789"));
  ASSERT_TRUE(opened.file);
  ASSERT_FALSE(opened.file->close());
  EXPECT_EQ(opened.file->writeOut(0, 10), std::errc::bad_file_descriptor);
  EXPECT_EQ(opened.file->writeOut(std::uint64_t{1} << 63U, 10), std::errc::file_too_large);
}

TEST_F(LinuxFiles, BeginsToWriteOutAsItWritesOut) {
  const auto opened = files.openForWriting(folder.put("a", ""));
  ASSERT_TRUE(opened.file);
  EXPECT_FALSE(write(*opened.file, 0, "0123456789").error);
  EXPECT_FALSE(opened.file->beginWriteOut(0, 10));
  EXPECT_EQ(folder.content("a"), "0123456789");
  ASSERT_FALSE(opened.file->close());
  EXPECT_EQ(opened.file->beginWriteOut(0, 10), std::errc::bad_file_descriptor);
}

TEST_F(LinuxFiles, WhatHasNoMediumIsWrittenOutAtOnce) {
  const auto opened = files.openForWriting("/dev/null");
  ASSERT_TRUE(opened.file);
  EXPECT_FALSE(opened.file->writeOut(0, 10));
}

TEST(NoRoom, IsAFullDiskOrAUsedUpShareAndNothingElse) {
  EXPECT_TRUE(platform::isNoRoom(std::error_code(ENOSPC, std::system_category())));
  EXPECT_TRUE(platform::isNoRoom(std::make_error_code(std::errc::no_space_on_device)));
  EXPECT_TRUE(platform::isNoRoom(std::error_code(EDQUOT, std::system_category())));
  EXPECT_TRUE(platform::isNoRoom(std::error_code(EDQUOT, std::generic_category())));
  EXPECT_FALSE(platform::isNoRoom({}));
  EXPECT_FALSE(platform::isNoRoom(std::error_code(EIO, std::system_category())));
  EXPECT_FALSE(platform::isNoRoom(std::make_error_code(std::errc::operation_not_supported)));
}

}  // namespace
}  // namespace zelvo::tests
