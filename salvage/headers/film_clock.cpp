#include "salvage/headers/film_clock.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zelvo::salvage {

namespace {

/// The commoner the earlier.
constexpr std::array kPictureRates{
    PictureRate{25, 1}, PictureRate{30, 1},       PictureRate{30000, 1001}, PictureRate{24, 1},
    PictureRate{15, 1}, PictureRate{24000, 1001}, PictureRate{12, 1},       PictureRate{20, 1},
    PictureRate{10, 1}, PictureRate{50, 1},       PictureRate{60, 1},       PictureRate{60000, 1001},
    PictureRate{25, 2}, PictureRate{16, 1},       PictureRate{18, 1},       PictureRate{8, 1},
    PictureRate{5, 1},  PictureRate{15, 2},       PictureRate{15000, 1001}, PictureRate{6, 1},
    PictureRate{14, 1}, PictureRate{1, 1},        PictureRate{70, 1},
};
constexpr std::array<std::uint32_t, 9> kSampleRates{44100, 48000, 22050, 32000, 11025, 8000, 16000, 24000, 96000};
constexpr std::array<std::uint32_t, 9> kSlowSampleRates{22050, 11025, 8000, 16000, 44100, 32000, 48000, 24000, 12000};

/// All rates that come of 44100 are this one, or twice or four times it.
constexpr std::uint32_t kTapeRate = 11025;
/// The most that an estimate is trusted to be off.
constexpr double kMostOff = 0.08;

double distance(double value, double usual) { return std::abs(value / usual - 1); }

/// The slope of lines through points of (pictures so far, sound so far): the share of a picture. What is missing
/// between two stretches lifts all points of the second one by as much, so each stretch has a line of its own, and all
/// have one slope.
class Slope {
 public:
  void add(double x, double y) {
    ++count_;
    sumX_ += x;
    sumY_ += y;
    sumXX_ += x * x;
    sumXY_ += x * y;
    sumYY_ += y * y;
  }
  void endStretch() {
    if (count_ > 0) {
      spreadXX_ += sumXX_ - sumX_ * sumX_ / count_;
      spreadXY_ += sumXY_ - sumX_ * sumY_ / count_;
      spreadYY_ += sumYY_ - sumY_ * sumY_ / count_;
      free_ += count_ - 1;
    }
    count_ = sumX_ = sumY_ = sumXX_ = sumXY_ = sumYY_ = 0;
  }
  /// \pre the last stretch was ended.
  [[nodiscard]] std::optional<double> value() const {
    if (spreadXX_ <= 0 || (free_ < 2 && between() < kFewestBetween)) return std::nullopt;
    return spreadXY_ / spreadXX_;
  }
  /// How far off it may be, as a share of itself: what the points are off the lines. \pre it has a value.
  [[nodiscard]] double error() const {
    // Two points tell nothing of it. A picture more or less may have been between them.
    if (free_ < 2) return 1 / between();
    const double slope = spreadXY_ / spreadXX_;
    const double off = std::max(0.0, spreadYY_ - slope * spreadXY_);
    return std::sqrt(off / (free_ - 1) / spreadXX_) / slope;
  }

 private:
  static constexpr double kFewestBetween = 8;

  /// Pictures between two points, when there are no more of them.
  [[nodiscard]] double between() const { return std::sqrt(2 * spreadXX_); }

  double count_ = 0;
  double sumX_ = 0;
  double sumY_ = 0;
  double sumXX_ = 0;
  double sumXY_ = 0;
  double sumYY_ = 0;
  double spreadXX_ = 0;
  double spreadXY_ = 0;
  double spreadYY_ = 0;
  double free_ = 0;
};

/// Walks over chunks in file order.
class Share {
 public:
  Share(std::uint8_t pictures, std::uint8_t sound) : picturesNumber_(pictures), soundNumber_(sound) {}

  void meet(std::uint8_t stream, std::uint32_t size) {
    if (stream == picturesNumber_) {
      // Only now: sound that no picture follows may go on for any time.
      for (const Point& point : waiting_) {
        bytesSlope_.add(pictures_, point.bytes);
        chunksSlope_.add(pictures_, point.chunks);
      }
      waiting_.clear();
      ++pictures_;
      pictureBytes_ += size;
    } else if (stream == soundNumber_) {
      // The chunk's own place counts for what came before it, so that the first one's lead does not.
      if (pictures_ > 0 && waiting_.size() < kMaxWaiting) waiting_.push_back({bytes_, chunks_});
      bytes_ += size;
      ++chunks_;
    }
  }
  /// So many bytes lie between what was met and what comes now, and it is not known of what.
  void meetGap(std::uint64_t size) {
    const double sounds = static_cast<double>(size) * chunks_ / (bytes_ + pictureBytes_ + 1);
    if (pictureBytes_ > 0 && sounds < kLikely) {
      pictures_ += std::round(static_cast<double>(size) * pictures_ / pictureBytes_);
    } else {
      endStretch();
    }
  }
  void endStretch() {
    waiting_.clear();
    bytesSlope_.endStretch();
    chunksSlope_.endStretch();
  }
  [[nodiscard]] std::optional<SoundShare> found() {
    endStretch();
    if (pictures_ < kFewest || bytes_ <= 0) return std::nullopt;
    const auto bytes = bytesSlope_.value();
    const auto chunks = chunksSlope_.value();
    if (bytes && chunks && *bytes > 0 && *chunks > 0) return SoundShare{*bytes, *chunks, bytesSlope_.error()};
    // Sound in a few long blocks: all of it came with all of the pictures, but for a part of one block.
    return SoundShare{bytes_ / pictures_, chunks_ / pictures_, 1 / (2 * chunks_)};
  }

 private:
  struct Point {
    double bytes = 0;
    double chunks = 0;
  };
  static constexpr std::size_t kMaxWaiting = 4096;
  static constexpr double kFewest = 3;
  /// A gap where fewer chunks of sound are to be expected holds none.
  static constexpr double kLikely = 0.5;

  std::uint8_t picturesNumber_;
  std::uint8_t soundNumber_;
  double pictures_ = 0;
  double pictureBytes_ = 0;
  double bytes_ = 0;
  double chunks_ = 0;
  std::vector<Point> waiting_;  ///< since the last picture
  Slope bytesSlope_;
  Slope chunksSlope_;
};

/// The likeliest first, at most four.
std::vector<RatePair> pairsWithin(double limit, double samplesPerPicture, const PairsWanted& wanted) {
  struct Ranked {
    RatePair pair;
    std::size_t rank;
  };
  std::vector<Ranked> ranked;
  const auto& rates = wanted.prefersSlow ? kSlowSampleRates : kSampleRates;
  for (std::size_t i = 0; i < kPictureRates.size(); ++i) {
    for (std::size_t j = 0; j < rates.size(); ++j) {
      if (wanted.isOfTapes && rates[j] % kTapeRate != 0) continue;
      if (distance(samplesPerPicture, rates[j] / kPictureRates[i].perSecond()) <= limit)
        ranked.push_back({{kPictureRates[i], rates[j]}, i + 2 * j});
    }
  }
  std::ranges::stable_sort(ranked, {}, &Ranked::rank);
  std::vector<RatePair> pairs;
  for (std::size_t i = 0; i < std::min<std::size_t>(ranked.size(), 4); ++i) pairs.push_back(ranked[i].pair);
  return pairs;
}

}  // namespace

std::optional<SoundShare> soundShare(const IndexTemplate& index, const CandidateList& candidates,
                                     const ChunkChain& chain, std::uint8_t pictures, std::uint8_t sound) {
  Share byIndex(pictures, sound);
  for (const TemplateEntry& entry : index.entries) {
    if (!entry.isForeign && !StreamCodes::isPalette(entry.suffix)) byIndex.meet(entry.stream, entry.size);
  }
  if (const auto found = byIndex.found()) return found;
  Share byChain(pictures, sound);
  std::uint64_t next = 0;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (!chain.closes(i)) continue;
    const Candidate& candidate = candidates[i];
    if (candidate.offset() > next) byChain.meetGap(candidate.offset() - next);
    next = std::max(next, candidate.next());
    if (candidate.kind() == CandidateKind::data && !StreamCodes::isPalette(candidate.suffix()))
      byChain.meet(candidate.stream(), candidate.size());
  }
  return byChain.found();
}

PictureRate usualPictureRate(double perSecond, double error) {
  constexpr double kNear = 0.005;
  if (2 * error > kNear) {
    const double limit = std::min(2 * error, kMostOff);
    const auto common = std::ranges::find_if(
        kPictureRates, [&](const PictureRate& rate) { return distance(perSecond, rate.perSecond()) <= limit; });
    if (common != kPictureRates.end()) return *common;
  }
  const auto nearest = std::ranges::min_element(
      kPictureRates, {}, [&](const PictureRate& rate) { return distance(perSecond, rate.perSecond()); });
  if (distance(perSecond, nearest->perSecond()) <= kNear) return *nearest;
  const double thousandths = std::clamp(perSecond * 1000, 1.0, 1e9);
  return {static_cast<std::uint32_t>(std::llround(thousandths)), 1000};
}

std::uint32_t usualSampleRate(double perSecond) {
  constexpr double kNear = 0.02;
  const auto nearest =
      std::ranges::min_element(kSampleRates, {}, [&](std::uint32_t rate) { return distance(perSecond, rate); });
  if (distance(perSecond, *nearest) <= kNear) return *nearest;
  return static_cast<std::uint32_t>(std::llround(std::clamp(perSecond, 1.0, 1e6)));
}

std::vector<RatePair> usualPairs(double samplesPerPicture, const PairsWanted& wanted) {
  constexpr double kNear = 0.003;
  constexpr double kFar = 0.012;  // what a film of a few blocks of sound may be off
  const double limit = std::clamp(2 * wanted.error, kNear, kMostOff);
  std::vector<RatePair> pairs = pairsWithin(limit, samplesPerPicture, wanted);
  return pairs.empty() ? pairsWithin(std::max(limit, kFar), samplesPerPicture, wanted) : pairs;
}

bool isOfTapes(std::span<const std::uint32_t> sizes, std::uint32_t block) {
  constexpr std::uint32_t kPart = 147;
  if (sizes.empty() || block == 0) return false;
  const auto isWhole = [&](std::uint32_t size) { return size >= block && size % (block * kPart) == 0; };
  return 2 * static_cast<std::size_t>(std::ranges::count_if(sizes, isWhole)) > sizes.size();
}

}  // namespace zelvo::salvage
