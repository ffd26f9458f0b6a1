#include "update/version_check.h"

#include <gtest/gtest.h>

#include "tests/update/fakes.h"

namespace zelvo::tests {
namespace {

class VersionCheck : public testing::Test, protected UpdateBench {
 protected:
  void publish(const std::string& version) {
    web.bodies[kListAddress] = listOf({{"CFBundleShortVersionString", version}});
  }
};

TEST_F(VersionCheck, OlderPublishedVersionCountsAsNewer) {
  publish("1.9");
  EXPECT_TRUE(updates.checkForUpdate());
}

TEST_F(VersionCheck, NewerPublishedVersionIsFound) {
  publish("2.1");
  EXPECT_TRUE(updates.checkForUpdate());
}

TEST_F(VersionCheck, EqualVersionsAreNoUpdate) {
  publish("2.0");
  EXPECT_FALSE(updates.checkForUpdate());
}

TEST_F(VersionCheck, VersionsAreComparedAsTextsAndNotAsNumbers) {
  publish("2.00");
  EXPECT_TRUE(updates.checkForUpdate());
  publish(" 2.0");
  EXPECT_TRUE(updates.checkForUpdate());
  publish("");
  EXPECT_TRUE(updates.checkForUpdate());
}

TEST_F(VersionCheck, BytesThatAreNoTextAreComparedAsTheyAre) {
  publish("2.0\xFF");
  EXPECT_TRUE(updates.checkForUpdate());
}

TEST_F(VersionCheck, WithoutANetworkNothingIsFetched) {
  publish("1.9");
  reachability.flags = 0;
  EXPECT_FALSE(updates.checkForUpdate());
  EXPECT_TRUE(web.asked.empty());
}

TEST_F(VersionCheck, SpacesOfTheAddressAreEscaped) {
  putOwnList(
      listOf({{"cloudPlistUrl", "http://updates.example/a b/ list.plist"}, {"CFBundleShortVersionString", "1"}}));
  web.bodies["http://updates.example/a%20b/%20list.plist"] = listOf({{"CFBundleShortVersionString", "2"}});
  EXPECT_TRUE(updates.checkForUpdate());
  EXPECT_EQ(web.asked, Lines{"http://updates.example/a%20b/%20list.plist"});
}

TEST_F(VersionCheck, TheFetchIsLimitedInTimeAndSize) {
  publish("1.9");
  EXPECT_TRUE(updates.checkForUpdate());
  EXPECT_EQ(web.lastLimits.connect, std::chrono::seconds(5));
  EXPECT_EQ(web.lastLimits.total, std::chrono::seconds(15));
  EXPECT_EQ(web.lastLimits.largest, 65536U);
}

TEST_F(VersionCheck, MissingOwnListIsNoUpdate) {
  publish("1.9");
  static_cast<void>(files.remove(bundle.path + "/Contents/Info.plist"));
  EXPECT_FALSE(updates.checkForUpdate());
  EXPECT_TRUE(web.asked.empty());
}

TEST_F(VersionCheck, OwnListThatIsNoDictionaryIsNoUpdate) {
  publish("1.9");
  for (const char* content :
       {"", "no list at all", "<plist><dict>", "<plist><array/></plist>", "<plist><string>a</string></plist>"}) {
    putOwnList(content);
    EXPECT_FALSE(updates.checkForUpdate()) << content;
  }
  EXPECT_TRUE(web.asked.empty());
}

TEST_F(VersionCheck, OwnListWithoutAnAddressIsNotAskedFurther) {
  publish("1.9");
  putOwnList(listOf({{"CFBundleShortVersionString", "2.0"}}));
  EXPECT_FALSE(updates.checkForUpdate());
  putOwnList("<plist><dict><key>cloudPlistUrl</key><integer>1</integer></dict></plist>");
  EXPECT_FALSE(updates.checkForUpdate());
  EXPECT_TRUE(web.asked.empty());
}

TEST_F(VersionCheck, OwnListWithoutAVersionIsNoUpdate) {
  publish("1.9");
  putOwnList(listOf({{"cloudPlistUrl", kListAddress}}));
  EXPECT_FALSE(updates.checkForUpdate());
  EXPECT_EQ(web.asked, Lines{kListAddress});
}

TEST_F(VersionCheck, OwnVersionThatIsNoTextIsMissing) {
  publish("1.9");
  putOwnList("<plist><dict><key>cloudPlistUrl</key><string>" + std::string(kListAddress) +
             "</string><key>CFBundleShortVersionString</key><real>2.0</real></dict></plist>");
  EXPECT_FALSE(updates.checkForUpdate());
}

TEST_F(VersionCheck, OwnListThatCannotBeReadIsNoUpdate) {
  publish("1.9");
  MemoryFile& own = files.at(bundle.path + "/Contents/Info.plist");
  own.badReadStart = 10;
  own.badReadEnd = 11;
  own.readError = std::make_error_code(std::errc::io_error);
  EXPECT_FALSE(updates.checkForUpdate());
}

TEST_F(VersionCheck, HugeOwnListIsNotRead) {
  publish("1.9");
  files.putSparse(bundle.path + "/Contents/Info.plist", std::uint64_t{1} << 40U);
  EXPECT_FALSE(updates.checkForUpdate());
}

TEST_F(VersionCheck, OwnListOfTheLargestSizeIsReadAndOneByteMoreIsNot) {
  publish("1.9");
  std::string list = listOf({{"cloudPlistUrl", kListAddress}, {"CFBundleShortVersionString", "2.0"}});
  list.append(1048576 - list.size(), ' ');
  putOwnList(list);
  EXPECT_TRUE(updates.checkForUpdate());
  putOwnList(list + " ");
  EXPECT_FALSE(updates.checkForUpdate());
  EXPECT_EQ(files.at(bundle.path + "/Contents/Info.plist").reads, 0U);
}

TEST_F(VersionCheck, TheNetworkIsAskedAboutBeforeTheOwnListIsRead) {
  reachability.flags = 0;
  EXPECT_FALSE(updates.checkForUpdate());
  EXPECT_EQ(reachability.asked, 1);
  EXPECT_EQ(files.at(bundle.path + "/Contents/Info.plist").reads, 0U);
}

TEST_F(VersionCheck, PublishedListOfTheLargestSizeIsReadAndWhatGoesBeyondIsDropped) {
  const auto publishListOf = [this](std::size_t size) {
    const auto padded = [](std::size_t pad) {
      return listOf({{"CFBundleShortVersionString", "1.9"}, {"pad", std::string(pad, 'x')}});
    };
    web.bodies[kListAddress] = padded(size - padded(0).size());
    ASSERT_EQ(web.bodies[kListAddress].size(), size);
  };
  publishListOf(65536);
  EXPECT_TRUE(updates.checkForUpdate());
  publishListOf(65536 + 9);  // the end of the dictionary and of the list
  EXPECT_FALSE(updates.checkForUpdate());
}

TEST_F(VersionCheck, PublishedListThatCannotBeFetchedIsNoUpdate) {
  web.bodies.clear();
  EXPECT_FALSE(updates.checkForUpdate());
}

TEST_F(VersionCheck, PublishedListThatComesShortIsNoUpdate) {
  publish("1.9");
  web.comesShort = true;
  EXPECT_FALSE(updates.checkForUpdate());
}

TEST_F(VersionCheck, PublishedListThatIsNoDictionaryIsNoUpdate) {
  for (const char* content : {"", "<html><body>404</body></html>", "{\"CFBundleShortVersionString\": \"1.9\"}",
                              "<plist><dict><key>CFBundleShortVersionString</key>", "<plist><array/></plist>"}) {
    web.bodies[kListAddress] = content;
    EXPECT_FALSE(updates.checkForUpdate()) << content;
  }
}

TEST_F(VersionCheck, PublishedListWithoutAVersionIsNoUpdate) {
  web.bodies[kListAddress] = listOf({{"CFBundleVersion", "1.9"}});
  EXPECT_FALSE(updates.checkForUpdate());
}

TEST_F(VersionCheck, PublishedVersionThatIsNoTextIsMissing) {
  for (const char* value : {"<real>1.9</real>", "<integer>1</integer>", "<true/>",
                            "<array><string>1.9</string></array>", "<data>MS45</data>", "<dict/>"}) {
    web.bodies[kListAddress] =
        "<plist><dict><key>CFBundleShortVersionString</key>" + std::string(value) + "</dict></plist>";
    EXPECT_FALSE(updates.checkForUpdate()) << value;
  }
}

TEST_F(VersionCheck, PublishedListMayBeginWithAByteOrderMark) {
  web.bodies[kListAddress] = "\xEF\xBB\xBF" + listOf({{"CFBundleShortVersionString", "1.9"}});
  EXPECT_TRUE(updates.checkForUpdate());
}

TEST_F(VersionCheck, PublishedListBeyondTheLargestSizeIsNoUpdate) {
  web.bodies[kListAddress] = listOf({{"CFBundleShortVersionString", std::string(65536, '1')}});
  EXPECT_FALSE(updates.checkForUpdate());
}

using Connectivity = VersionCheck;

TEST_F(Connectivity, TheZeroAddressIsAskedAbout) {
  EXPECT_TRUE(updates.isInternetAvailable());
  EXPECT_EQ(reachability.lastAddress.length, 16);
  EXPECT_EQ(reachability.lastAddress.family, 2);
  EXPECT_EQ(reachability.lastAddress.port, 0);
  EXPECT_EQ(reachability.lastAddress.address, (std::array<std::uint8_t, 4>{}));
  EXPECT_EQ(reachability.lastAddress.zero, (std::array<std::uint8_t, 8>{}));
}

TEST_F(Connectivity, OnlyReachableWithoutAConnectionRequiredIsAvailable) {
  constexpr std::uint32_t kOtherBits = 0xFFFFFFF9;
  for (const std::uint32_t others : {0U, kOtherBits}) {
    reachability.flags = others;
    EXPECT_FALSE(updates.isInternetAvailable());
    reachability.flags = others | 0x2U;
    EXPECT_TRUE(updates.isInternetAvailable());
    reachability.flags = others | 0x4U;
    EXPECT_FALSE(updates.isInternetAvailable());
    reachability.flags = others | 0x6U;
    EXPECT_FALSE(updates.isInternetAvailable());
  }
}

TEST_F(Connectivity, NoFlagsIsNotAvailable) {
  reachability.flags = std::nullopt;
  EXPECT_FALSE(updates.isInternetAvailable());
}

TEST_F(Connectivity, NoReferenceIsNotAvailable) {
  reachability.makesReferences = false;
  EXPECT_FALSE(updates.isInternetAvailable());
}

TEST_F(Connectivity, TheReferenceIsReleased) {
  static_cast<void>(updates.isInternetAvailable());
  EXPECT_EQ(reachability.liveReferences, 0);
}

}  // namespace
}  // namespace zelvo::tests
