#include "update/hashes.h"

#include <gtest/gtest.h>

#include "platform/linux/digest.h"
#include "tests/update/fakes.h"

namespace zelvo::tests {
namespace {

constexpr const char* kOfAbc = "900150983cd24fb0d6963f7d28e17f72";
constexpr const char* kOfNoBytes = "d41d8cd98f00b204e9800998ecf8427e";

class Hashes : public testing::Test, protected UpdateBench {};

TEST_F(Hashes, AbcGivesItsDigest) { EXPECT_EQ(updates.md5(bytesOf("abc")), kOfAbc); }

TEST_F(Hashes, AbsentDataGiveNothing) { EXPECT_EQ(updates.md5(std::nullopt), std::nullopt); }

TEST_F(Hashes, NoBytesAreHashedLikeAnyOther) { EXPECT_EQ(updates.md5(std::span<const std::byte>()), kOfNoBytes); }

TEST_F(Hashes, EveryByteCounts) {
  EXPECT_EQ(updates.md5(bytesOf(std::string(1000000, 'a'))), "7707d6ae4e027c70eea2a935c2296f21");
  EXPECT_EQ(updates.md5(bytesOf(std::string_view("\0", 1))), "93b885adfe0da089cdf634904fd59f71");
}

TEST_F(Hashes, WithoutTheAlgorithmThereIsNothing) {
  struct NoDigest final : platform::Digest {
    std::unique_ptr<platform::RunningDigest> startMd5() override { return nullptr; }
  } none;
  update::Hashes hashes(none, files, web);
  files.put("/a", bytesOf("abc"));
  EXPECT_EQ(hashes.md5(bytesOf("abc")), std::nullopt);
  EXPECT_EQ(hashes.hashString("/a"), std::nullopt);
}

TEST_F(Hashes, LocalFileIsHashedWhole) {
  files.put("/a", bytesOf("abc"));
  files.put("/long", bytesOf(std::string(1000000, 'a')));
  files.put("/empty", {});
  EXPECT_EQ(updates.hashString("/a"), kOfAbc);
  EXPECT_EQ(updates.hashString("/long"), "7707d6ae4e027c70eea2a935c2296f21");
  EXPECT_EQ(updates.hashString("/empty"), kOfNoBytes);
}

TEST_F(Hashes, FileOfSeveralWholeBlocksIsHashedWhole) {
  files.put("/blocks", platform::Bytes(131072));
  EXPECT_EQ(updates.hashString("/blocks"), updates.md5(platform::Bytes(131072)));
}

TEST_F(Hashes, SpacesOfALocalPathStay) {
  files.put("/a b", bytesOf("abc"));
  EXPECT_EQ(updates.hashString("/a b"), kOfAbc);
}

TEST_F(Hashes, MissingOrUnreadableFileGivesNothing) {
  MemoryFile& file = files.put("/bad", bytesOf(std::string(200000, 'a')));
  file.badReadStart = 100000;
  file.badReadEnd = 100001;
  file.readError = std::make_error_code(std::errc::io_error);
  EXPECT_EQ(updates.hashString("/missing"), std::nullopt);
  EXPECT_EQ(updates.hashString("/bad"), std::nullopt);
  EXPECT_EQ(updates.hashString(""), std::nullopt);
}

TEST_F(Hashes, WebAddressIsFetchedWithItsSpacesEscaped) {
  web.bodies["http://example/a%20b"] = "abc";
  EXPECT_EQ(updates.hashString("http://example/a b"), kOfAbc);
  EXPECT_EQ(web.asked, Lines{"http://example/a%20b"});
}

TEST_F(Hashes, WholeResourceIsTakenHoweverLongItIs) {
  web.bodies["https://example/"] = std::string(1000000, 'a');
  EXPECT_EQ(updates.hashString("https://example/"), "7707d6ae4e027c70eea2a935c2296f21");
  EXPECT_FALSE(web.lastLimits.total.has_value());
  EXPECT_FALSE(web.lastLimits.largest.has_value());
  EXPECT_EQ(web.lastLimits.leastBytesPerSecond, 1024U);
  EXPECT_EQ(web.lastLimits.leastOver, std::chrono::seconds(30));
  EXPECT_EQ(web.lastLimits.connect, std::chrono::seconds(5));
}

TEST_F(Hashes, FileThatBeginsLikeAnAddressCountsAsOne) {
  files.put("httpd.conf", bytesOf("abc"));
  EXPECT_EQ(updates.hashString("httpd.conf"), std::nullopt);
  EXPECT_EQ(web.asked, Lines{"httpd.conf"});
}

TEST_F(Hashes, OnlySmallLettersAtTheBeginningMakeAnAddress) {
  web.bodies["HTTP://example/"] = "abc";
  web.bodies[" http://example/"] = "abc";
  EXPECT_EQ(updates.hashString("HTTP://example/"), std::nullopt);
  EXPECT_EQ(updates.hashString(" http://example/"), std::nullopt);
  EXPECT_TRUE(web.asked.empty());
}

TEST_F(Hashes, ResourceThatComesShortGivesNothing) {
  web.bodies["http://example/"] = "abc";
  web.comesShort = true;
  EXPECT_EQ(updates.hashString("http://example/"), std::nullopt);
}

TEST_F(Hashes, EmptyResourceIsHashed) {
  web.bodies["http://example/"] = "";
  EXPECT_EQ(updates.hashString("http://example/"), kOfNoBytes);
}

}  // namespace
}  // namespace zelvo::tests
