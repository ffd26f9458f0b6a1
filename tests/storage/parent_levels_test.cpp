#include "storage/parent_levels.h"

#include <gtest/gtest.h>

#include "storage/media_walk.h"
#include "tests/support/recorded_system.h"
#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

using storage::Entry;

/// The entry of the only medium of a registry with this root.
Entry described(const PropertyDictionary& root) {
  RecordedSystem system(machine({root}));
  storage::Entries media;
  platform::NoPrintSink nowhere;
  storage::FindMediaMain(system, media, {}, nowhere);
  EXPECT_EQ(media.size(), 1U);
  return media.empty() ? Entry{} : media.front();
}

const PropertyDictionary kDisk = medium({{"BSD Name", "disk0"}});

PropertyDictionary atLevel(int level, const PropertyDictionary& properties) {
  PropertyDictionary tree = kDisk;
  for (int below = 1; below < level; ++below) tree = above(tree, {});
  return above(tree, properties);
}

TEST(ParentLevels, SataParentSetsWhetherSata) {
  const Entry entry = described(atLevel(2, connectedBy("SATA")));
  EXPECT_EQ(*entry.find("WhetherSATA"), kOne);
  EXPECT_FALSE(entry.contains("WhetherUSB"));
}

TEST(ParentLevels, UsbParentSetsWhetherUsb) {
  const Entry entry = described(atLevel(2, connectedBy("USB")));
  EXPECT_EQ(*entry.find("WhetherUSB"), kOne);
  EXPECT_FALSE(entry.contains("WhetherSATA"));
}

TEST(ParentLevels, FireWireIsFiledUnderUsb) {
  EXPECT_EQ(*described(atLevel(2, connectedBy("FireWire"))).find("WhetherUSB"), kOne);
}

TEST(ParentLevels, OtherConnectionsSetNoFlag) {
  const Entry entry = described(atLevel(2, connectedBy("PCI-Express")));
  EXPECT_FALSE(entry.contains("WhetherUSB"));
  EXPECT_FALSE(entry.contains("WhetherSATA"));
}

TEST(ParentLevels, CardReaderIsFiledUnderUsb) {
  const Entry entry = described(atLevel(2, {{"IOClass", "AppleSDXCBlockStorageDevice"}}));
  EXPECT_EQ(*entry.find("WhetherCardReader"), kOne);
  EXPECT_EQ(*entry.find("WhetherUSB"), kOne);
}

TEST(ParentLevels, CardCharacteristicsSupplyTheProductRevisionLevelOfACardReader) {
  const PropertyDictionary card{
      {"IOClass", "AppleSDXCBlockStorageDevice"},
      {"Card Characteristics", PropertyDictionary{{"Product Revision Level", "8.0"}}},
      {"Device Characteristics", PropertyDictionary{{"Vendor Identification", "V"}, {"Product Identification", "P"}}}};
  const Entry entry = described(atLevel(2, card));
  EXPECT_EQ(*entry.text("Product Revision Level"), "8.0");
  EXPECT_EQ(*entry.text("Vendor Identification"), "V");
  EXPECT_EQ(*entry.text("Product Identification"), "P");
}

TEST(ParentLevels, CardCharacteristicsGoBeforeDeviceCharacteristics) {
  const PropertyDictionary card{
      {"IOClass", "AppleSDXCBlockStorageDevice"},
      {"Card Characteristics", PropertyDictionary{{"Product Revision Level", "card"}}},
      {"Device Characteristics", PropertyDictionary{{"Product Revision Level", "device"}, {"Revision", "r"}}}};
  const Entry entry = described(atLevel(2, card));
  EXPECT_EQ(*entry.text("Product Revision Level"), "card");
  EXPECT_EQ(*entry.text("device revision"), "r");
}

TEST(ParentLevels, NearerLevelGoesBeforeCardCharacteristicsToo) {
  const PropertyDictionary card{{"IOClass", "AppleSDXCBlockStorageDevice"},
                                {"Card Characteristics", PropertyDictionary{{"Product Revision Level", "far"}}}};
  const auto near = above(kDisk, characteristics({{"Product Revision Level", "near"}}));
  EXPECT_EQ(*described(above(near, card)).text("Product Revision Level"), "near");
}

TEST(ParentLevels, CardCharacteristicsOfAnotherDeviceAreNotRead) {
  const PropertyDictionary other{{"IOClass", "IOBlockStorageDevice"},
                                 {"Card Characteristics", PropertyDictionary{{"Product Revision Level", "8.0"}}}};
  EXPECT_FALSE(described(atLevel(2, other)).contains("Product Revision Level"));
}

TEST(ParentLevels, EveryTextIsStoredUnderItsKey) {
  const Entry entry = described(atLevel(2, characteristics({{"Vendor Identification", "a"},
                                                            {"Product Identification", "b"},
                                                            {"Product Revision Level", "c"},
                                                            {"Model", "d"},
                                                            {"Serial Number", "e"},
                                                            {"Revision", "f"}})));
  EXPECT_EQ(*entry.text("Vendor Identification"), "a");
  EXPECT_EQ(*entry.text("Product Identification"), "b");
  EXPECT_EQ(*entry.text("Product Revision Level"), "c");
  EXPECT_EQ(*entry.text("device model"), "d");
  EXPECT_EQ(*entry.text("device serial"), "e");
  EXPECT_EQ(*entry.text("device revision"), "f");
}

TEST(ParentLevels, FourthLevelIsReadAndTheFifthIsNot) {
  EXPECT_EQ(*described(atLevel(4, characteristics({{"Model", "far"}}))).text("device model"), "far");
  EXPECT_FALSE(described(atLevel(5, characteristics({{"Model", "too far"}}))).contains("device model"));
}

TEST(ParentLevels, NearerLevelKeepsItsTextAndAFartherOneAddsWhatIsMissing) {
  const auto near = above(kDisk, characteristics({{"Model", "near"}}));
  const Entry entry = described(above(near, characteristics({{"Model", "far"}, {"Revision", "r"}})));
  EXPECT_EQ(*entry.text("device model"), "near");
  EXPECT_EQ(*entry.text("device revision"), "r");
}

TEST(ParentLevels, AllParentsOfALevelAreRead) {
  auto shared = kDisk;
  shared.set("IORegistryEntryID", std::uint64_t{7});
  RecordedSystem system(machine({above(shared, connectedBy("SATA")), above(shared, connectedBy("USB"))}));
  storage::Entries media;
  platform::NoPrintSink nowhere;
  storage::FindMediaMain(system, media, {}, nowhere);
  ASSERT_EQ(media.size(), 1U);
  EXPECT_TRUE(media[0].contains("WhetherSATA"));
  EXPECT_TRUE(media[0].contains("WhetherUSB"));
}

TEST(ParentLevels, ParentsAreReadDepthFirst) {
  auto shared = kDisk;
  shared.set("IORegistryEntryID", std::uint64_t{7});
  const auto first = above(above(shared, {{"place", "a"}}), both(characteristics({{"Model", "a"}}), {{"place", "A"}}));
  const auto second = above(shared, both(characteristics({{"Model", "b"}}), {{"place", "b"}}));
  RecordedSystem system(machine({first, second}));
  storage::Entries media;
  KeptPrint printed;
  storage::FindMediaMain(system, media, {}, printed);
  ASSERT_EQ(media.size(), 1U);
  EXPECT_EQ(*media[0].text("device model"), "a");  // a grandparent's, though the second parent is nearer
  std::string places;
  constexpr std::string_view kPlace = "\"place\" = \"";
  for (std::size_t at = printed.text.find(kPlace); at != std::string::npos; at = printed.text.find(kPlace, at + 1)) {
    places += printed.text[at + kPlace.size()];
  }
  EXPECT_EQ(places, "aAb");
}

TEST(ParentLevels, FlagsAreNumbersOf32Bits) {
  const Entry entry = described(above(atLevel(1, connectedBy("SATA")), connectedBy("USB")));
  for (const char* key : {"WhetherSATA", "WhetherUSB"}) {
    EXPECT_TRUE(std::holds_alternative<std::int32_t>(entry.find(key)->value)) << key;
  }
}

TEST(MediaIcon, DefaultIsTheRemovableOne) {
  const Entry entry = described(atLevel(4, {}));
  EXPECT_EQ(*entry.text("CFBundleIdentifier"), "com.apple.iokit.IOStorageFamily");
  EXPECT_EQ(*entry.text("IOBundleResourceFile"), "Removable.icns");
}

TEST(MediaIcon, OwnIconGoesBeforeTheParents) {
  const auto disk = medium(both({{"BSD Name", "disk0"}}, icon("own", "Own.icns")));
  const Entry entry = described(above(disk, icon("parent", "Parent.icns")));
  EXPECT_EQ(*entry.text("CFBundleIdentifier"), "own");
  EXPECT_EQ(*entry.text("IOBundleResourceFile"), "Own.icns");
}

TEST(MediaIcon, NearestParentWithAnIconSuppliesIt) {
  const Entry entry = described(above(atLevel(2, icon("near", "Near.icns")), icon("far", "Far.icns")));
  EXPECT_EQ(*entry.text("CFBundleIdentifier"), "near");
  EXPECT_EQ(*entry.text("IOBundleResourceFile"), "Near.icns");
}

TEST(MediaIcon, KeysOfTwoLevelsAreNotMixed) {
  const PropertyDictionary half{{"IOMediaIcon", PropertyDictionary{{"CFBundleIdentifier", "near"}}}};
  const Entry entry = described(above(atLevel(1, half), icon("far", "Far.icns")));
  EXPECT_EQ(*entry.text("CFBundleIdentifier"), "near");
  EXPECT_FALSE(entry.contains("IOBundleResourceFile"));
}

TEST(MediaIcon, FileWithoutABundleKeepsAFartherIconOutToo) {
  const PropertyDictionary half{{"IOMediaIcon", PropertyDictionary{{"IOBundleResourceFile", "Near.icns"}}}};
  const Entry entry = described(above(atLevel(1, half), icon("far", "Far.icns")));
  EXPECT_EQ(*entry.text("IOBundleResourceFile"), "Near.icns");
  EXPECT_FALSE(entry.contains("CFBundleIdentifier"));
}

TEST(MediaIcon, CardReadersIconIsTaken) {
  const Entry entry =
      described(atLevel(2, both({{"IOClass", "AppleSDXCBlockStorageDevice"}}, icon("card", "SD.icns"))));
  EXPECT_EQ(*entry.text("IOBundleResourceFile"), "SD.icns");
}

}  // namespace
}  // namespace zelvo::tests
