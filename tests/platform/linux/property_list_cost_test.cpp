#include "platform/linux/property_list_cost.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <span>

#include "platform/linux/property_lists.h"
#include "tests/platform/linux/binary_lists.h"

namespace zelvo::tests {
namespace {

using platform::PropertyLists;
using platform::linux_::LinuxPropertyLists;

std::span<const std::byte> bytes(const std::string& list) { return std::as_bytes(std::span(list)); }

std::optional<platform::PropertyValue> read(const std::string& list) {
  return LinuxPropertyLists().parse(bytes(list), PropertyLists::kLargestFromOutside);
}

bool isReadable(const std::string& list, std::size_t deepest = 256, std::uint64_t most = 2097152) {
  return platform::linux_::isReadable(bytes(list), deepest, most);
}

/// Arrays of two, each with the next one twice, `levels` of them around a text.
std::string doubled(int levels) {
  BinaryListBuilder list;
  std::size_t top = list.text("a");
  for (int level = 0; level < levels; ++level) top = list.array({top, top});
  return list.build(top);
}

TEST(PropertyListCost, OrdinaryListIsReadable) {
  BinaryListBuilder list;
  const std::size_t key = list.text("CFBundleShortVersionString");
  const std::size_t top = list.dictionary({key}, {list.text("1.9")});
  EXPECT_TRUE(isReadable(list.build(top)));
  const auto tree = read(list.build(top));
  ASSERT_TRUE(tree && tree->dictionary());
  EXPECT_EQ(*tree->dictionary()->text("CFBundleShortVersionString"), "1.9");
}

TEST(PropertyListCost, ObjectInManyPlacesCountsInEach) {
  BinaryListBuilder list;
  const std::size_t text = list.text(std::string(1000, 'a'));
  const std::string both = list.build(list.array({text, text}));
  EXPECT_TRUE(isReadable(both, 256, 64 + 2 * 1064));
  EXPECT_FALSE(isReadable(both, 256, 64 + 2 * 1064 - 1));
}

TEST(PropertyListCost, ListMayGrowThirtyTwoTimesTheSizeUpToWhichItIsRead) {
  BinaryListBuilder list;
  const std::size_t text = list.text(std::string(1000, 'a'));
  const std::string many = list.build(list.array(std::vector<std::size_t>(40, text)));
  // 40 texts and their array: 42624 bytes, 1332 * 32.
  ASSERT_LT(many.size(), 1332U);
  EXPECT_TRUE(LinuxPropertyLists().parse(bytes(many), 1332).has_value());
  EXPECT_FALSE(LinuxPropertyLists().parse(bytes(many), 1331).has_value());
}

TEST(PropertyListCost, ListThatDoublesAtEachLevelIsRefused) {
  EXPECT_TRUE(read(doubled(10)).has_value());
  for (const int levels : {20, 30, 60, 200}) EXPECT_FALSE(read(doubled(levels)).has_value()) << levels;
}

TEST(PropertyListCost, WideArraysWithinEachOtherAreRefused) {
  BinaryListBuilder list;
  std::size_t top = list.text("a");
  for (int level = 0; level < 5; ++level) top = list.array(std::vector<std::size_t>(5000, top));
  EXPECT_FALSE(read(list.build(top)).has_value());
}

TEST(PropertyListCost, ListThatHoldsItselfIsRefused) {
  BinaryListBuilder list;
  list.array({1});
  list.array({0});
  EXPECT_FALSE(read(list.build(0)).has_value());
}

std::string nestedBinary(std::size_t levels) {
  BinaryListBuilder list;
  std::size_t top = list.array({});
  for (std::size_t level = 1; level < levels; ++level) top = list.array({top});
  return list.build(top);
}

TEST(PropertyListCost, DeepestNestingIsReadAndOneLevelMoreIsNot) {
  EXPECT_TRUE(read(nestedBinary(256)).has_value());
  EXPECT_FALSE(read(nestedBinary(257)).has_value());
  EXPECT_FALSE(read(nestedBinary(7000)).has_value());
}

TEST(PropertyListCost, DeepestXmlThatFitsExhaustsNoStack) {
  std::string list = "<plist>";
  while (list.size() + 7 <= PropertyLists::kLargestFromOutside) list += "<array>";
  EXPECT_FALSE(read(list).has_value());
}

TEST(PropertyListCost, LargestOwnListOfNothingButLevelsExhaustsNoStack) {
  std::string list = "<plist>";
  for (int level = 0; level < 149000; ++level) list += "<array>";
  EXPECT_FALSE(LinuxPropertyLists().parse(bytes(list), std::size_t{1024} * 1024).has_value());
}

TEST(PropertyListCost, KeyThatIsNoTextIsRefused) {
  BinaryListBuilder list;
  const std::size_t number = list.add("\x10\x05");
  const std::size_t nothing = list.array({});
  for (const std::size_t key : {number, nothing}) {
    const std::size_t top = list.dictionary({key}, {number});
    EXPECT_FALSE(read(list.build(top)).has_value());
  }
}

TEST(PropertyListCost, KeyWithACharacterZeroIsRefusedAndATextWithOneIsNot) {
  BinaryListBuilder list;
  const std::size_t key = list.text("key");
  const std::size_t narrow = list.text(std::string("a\0b", 3));
  const std::size_t wide = list.add(std::string("\x62\0a\0\0", 5));
  for (const std::size_t text : {narrow, wide}) {
    const std::size_t asKey = list.dictionary({text}, {key});
    const std::size_t asValue = list.dictionary({key}, {text});
    EXPECT_FALSE(read(list.build(asKey)).has_value());
    EXPECT_TRUE(read(list.build(asValue)).has_value());
  }
}

TEST(PropertyListCost, ObjectsThatNothingLeadsToAreNotLookedAt) {
  BinaryListBuilder list;
  list.add("\x5F");  // a text whose length is missing
  const std::size_t top = list.text("a");
  EXPECT_TRUE(isReadable(list.build(top)));
}

TEST(PropertyListCost, ListThatIsNotWholeIsRefused) {
  const std::string whole = doubled(3);
  EXPECT_TRUE(isReadable(whole));
  for (std::size_t size = 0; size < whole.size(); ++size) EXPECT_FALSE(isReadable(whole.substr(0, size))) << size;
}

TEST(PropertyListCost, NumbersBeyondTheListAreRefused) {
  const std::string whole = doubled(3);
  const std::size_t trailer = whole.size() - 32;
  for (std::size_t at = trailer + 6; at < whole.size(); ++at) {
    for (const char byte : {'\0', '\x7F', '\xFF'}) {
      std::string damaged = whole;
      damaged[at] = byte;
      const auto tree = read(damaged);  // no crash, no hang
      if (isReadable(damaged)) continue;
      EXPECT_FALSE(tree.has_value());
    }
  }
}

TEST(PropertyListCost, CountsBeyondTheListAreRefused) {
  for (const char* object : {"\xAF\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "\xDF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF",
                             "\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "\xAF\x14", "\xAF\x51"}) {
    BinaryListBuilder list;
    const std::size_t top = list.add(object);
    EXPECT_FALSE(read(list.build(top)).has_value());
  }
}

}  // namespace
}  // namespace zelvo::tests
