// Films that were taken for text.
#include "salvage/scan/text_transfer.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::TextTransfer;

Bytes randomBytes(std::size_t size) {
  std::mt19937 random(3);
  Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() % 256);
  return bytes;
}

Bytes asText(const Bytes& bytes) {
  Bytes text;
  for (const std::byte byte : bytes) {
    if (byte == std::byte{0x0a}) text.push_back(std::byte{0x0d});
    text.push_back(byte);
  }
  return text;
}

struct Transferred {
  explicit Transferred(Bytes bytes) {
    files.put("/in.avi", std::move(bytes));
    file = files.openForReading("/in.avi").file;
    text = TextTransfer::find(*file, [] { return false; });
  }
  [[nodiscard]] Bytes read(std::uint64_t offset, std::size_t size) const {
    Bytes bytes(size);
    bytes.resize(text->readAt(offset, bytes).count);
    return bytes;
  }

  MemoryFiles files;
  std::unique_ptr<platform::ReadableFile> file;
  std::unique_ptr<TextTransfer> text;
};

TEST(TextTransfer, OtherFilmsAreNone) {
  EXPECT_EQ(Transferred(randomBytes(200'000)).text, nullptr);
  EXPECT_EQ(Transferred({}).text, nullptr);
  EXPECT_EQ(Transferred(Bytes(100'000, std::byte{1})).text, nullptr);
  EXPECT_EQ(Transferred(asText(randomBytes(5'000))).text, nullptr) << "too few to tell";
}

TEST(TextTransfer, FilmWithoutFeedsIsReadNoFurtherThanItsFront) {
  MemoryFiles files;
  files.put("/in.avi", Bytes(4'000'000, std::byte{1}));
  const auto file = files.openForReading("/in.avi").file;
  int asked = 0;
  EXPECT_EQ(TextTransfer::find(*file, [&] { return ++asked > 1000; }), nullptr);
  EXPECT_LT(asked, 20);
}

TEST(TextTransfer, FilmIsReadAsItWas) {
  const Bytes original = randomBytes(300'000);
  const Transferred film(asText(original));
  ASSERT_NE(film.text, nullptr);
  EXPECT_EQ(film.text->size(), original.size());
  EXPECT_EQ(film.read(0, original.size()), original);
  for (const std::size_t at : {1U, 65'000U, 65'536U, 130'900U, 299'990U}) {
    const std::size_t size = std::min<std::size_t>(777, original.size() - at);
    EXPECT_EQ(film.read(at, 777), Bytes(original.begin() + static_cast<std::ptrdiff_t>(at),
                                        original.begin() + static_cast<std::ptrdiff_t>(at + size)));
  }
  EXPECT_TRUE(film.read(original.size(), 10).empty());
}

TEST(TextTransfer, PairAcrossABlocksEndIsOneByte) {
  for (const std::size_t at : {65'534U, 65'535U, 65'536U}) {
    Bytes original = randomBytes(200'000);
    std::erase(original, std::byte{0x0a});
    std::erase(original, std::byte{0x0d});
    // Exactly the pair in question comes before the second block.
    original[at - 0] = std::byte{0x0a};
    for (std::size_t i = 0; i < 100; ++i) original[100'000 + 50 * i] = std::byte{0x0a};
    const Transferred film(asText(original));
    ASSERT_NE(film.text, nullptr);
    EXPECT_EQ(film.read(0, original.size()), original);
    EXPECT_EQ(film.read(at, 3), Bytes(original.begin() + static_cast<std::ptrdiff_t>(at),
                                      original.begin() + static_cast<std::ptrdiff_t>(at) + 3));
  }
}

TEST(TextTransfer, ReturnsOfTheFilmsOwnStay) {
  Bytes original(100'000, std::byte{0x0d});
  for (std::size_t i = 0; i < original.size(); i += 7) original[i] = std::byte{0x0a};
  const Transferred film(asText(original));
  ASSERT_NE(film.text, nullptr);
  EXPECT_EQ(film.read(0, original.size()), original);
}

TEST(TextTransfer, SomeLaterDamageDoesNotHideIt) {
  Bytes text = asText(randomBytes(300'000));
  for (std::size_t i = 200'000; i < 200'005; ++i) text[2 * i - 200'000] = std::byte{0x0a};
  EXPECT_NE(Transferred(text).text, nullptr);
}

TEST(TextTransfer, FailingReadEndsShort) {
  Bytes text = asText(randomBytes(300'000));
  Transferred film(text);
  ASSERT_NE(film.text, nullptr);
  MemoryFile& file = film.files.at("/in.avi");
  file.badReadStart = 150'000;
  file.badReadEnd = 150'001;
  file.readError = std::make_error_code(std::errc::io_error);
  Bytes bytes(200'000);
  const auto result = film.text->readAt(0, bytes);
  EXPECT_LT(result.count, 150'001U);
  EXPECT_TRUE(result.error);
}

}  // namespace
}  // namespace zelvo::tests
