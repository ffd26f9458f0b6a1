// Stretches of an index that chunks of constant sizes let slide along the film.
#include "salvage/chain/likely_stretches.h"

#include <map>
#include <span>

#include <gtest/gtest.h>

#include "avi/byte_order.h"
#include "tests/salvage/planned_film.h"

namespace zelvo::tests {
namespace {

/// A film of a hundred pictures of one size, each followed by JUNK where asked for, and what is done to it.
class EvenFilm {
 public:
  static constexpr std::size_t kPictures = 100;
  static constexpr std::uint32_t kSize = 1000;

  explicit EvenFilm(std::uint32_t fill = 0) {
    AviBuilder builder;
    for (std::size_t i = 0; i < kPictures; ++i) builder.chunks.push_back({"00dc", kSize, std::byte{0x91}});
    bytes_ = builder.build();
    payloads_ = payloadOffsets(builder);
    if (fill > 0) fillUp(fill);
  }

  /// From the last picture to the first.
  void remove(std::size_t picture, std::size_t count) { edit(picture, -static_cast<std::int64_t>(count)); }
  void insert(std::size_t picture, std::size_t count) { edit(picture, static_cast<std::int64_t>(count)); }

  /// Which pictures do not lie where they do, by number, with how many bytes their slots are off.
  [[nodiscard]] std::map<std::size_t, std::int64_t> wrong() const {
    const PlannedFilm planned(bytes_);
    const auto sources = planned.sources();
    EXPECT_EQ(sources.size(), kPictures);
    std::map<std::size_t, std::int64_t> numbers;
    for (std::size_t i = 0; i < std::min(sources.size(), kPictures); ++i) {
      const auto payload = static_cast<std::int64_t>(payloads_[i]) + moved(i);
      if (static_cast<std::int64_t>(sources[i]) != payload)
        numbers[i] = sources[i] == 0 ? 0 : static_cast<std::int64_t>(sources[i]) - payload;
    }
    return numbers;
  }

 private:
  /// Puts JUNK behind each picture, which the index does not name.
  void fillUp(std::uint32_t fill) {
    constexpr std::size_t kEntry = 16;
    constexpr std::size_t kOffset = 8;
    constexpr std::size_t kListAndCode = 12;
    const std::size_t index = payloads_.back() + kSize + 8;
    platform::Bytes junk;
    appendText(junk, "JUNK");
    junk.resize(8 + fill);
    const auto add = [&](std::size_t at, std::size_t more) {
      const auto place = std::span(bytes_).subspan(at).first<4>();
      avi::storeLittleEndian32(place, avi::loadLittleEndian32(place) + static_cast<std::uint32_t>(more));
    };
    avi::storeLittleEndian32(std::span(junk).subspan<4, 4>(), fill);
    add(payloads_.front() - 8 - kListAndCode + 4, kPictures * junk.size());
    for (std::size_t i = 0; i < kPictures; ++i) add(index + i * kEntry + kOffset, i * junk.size());
    for (std::size_t i = kPictures; i-- > 0;) {
      const auto end = bytes_.begin() + static_cast<std::ptrdiff_t>(payloads_[i] + kSize);
      bytes_.insert(end, junk.begin(), junk.end());
    }
    for (std::size_t i = 0; i < kPictures; ++i) payloads_[i] += i * junk.size();
  }

  void edit(std::size_t picture, std::int64_t count) {
    const auto at = bytes_.begin() + static_cast<std::ptrdiff_t>(payloads_[picture] + 500);
    if (count < 0) {
      bytes_.erase(at, at - count);
    } else {
      bytes_.insert(at, static_cast<std::size_t>(count), std::byte{0x33});
    }
    edits_[picture] = count;
  }

  [[nodiscard]] std::int64_t moved(std::size_t picture) const {
    std::int64_t sum = 0;
    for (const auto& [number, count] : edits_) sum += number < picture ? count : 0;
    return sum;
  }

  platform::Bytes bytes_;
  std::vector<std::uint64_t> payloads_;
  std::map<std::size_t, std::int64_t> edits_;
};

TEST(LikelyStretches, NothingIsMovedInASoundFilm) { EXPECT_TRUE(EvenFilm().wrong().empty()); }

TEST(LikelyStretches, BytesPutInLeaveEveryPictureInItsPlace) {
  EvenFilm film;
  film.insert(96, 1320);
  film.insert(24, 405);
  film.insert(2, 1370);
  EXPECT_TRUE(film.wrong().empty());
}

TEST(LikelyStretches, NearlyAPictureMissingMovesNoOther) {
  EvenFilm film;
  film.remove(95, 950);
  film.remove(13, 950);
  film.remove(7, 950);
  // What lost its header is lost; what it is torn from stays.
  const std::map<std::size_t, std::int64_t> lost{{8, 0}, {14, 0}, {96, 0}};
  EXPECT_EQ(film.wrong(), lost);
}

TEST(LikelyStretches, SlackBehindTheLastPictureIsNoShift) {
  EvenFilm film(150);
  film.remove(95, 950);
  film.remove(13, 950);
  film.remove(7, 950);
  const std::map<std::size_t, std::int64_t> lost{{8, 0}, {14, 0}, {96, 0}};
  EXPECT_EQ(film.wrong(), lost);
}

}  // namespace
}  // namespace zelvo::tests
