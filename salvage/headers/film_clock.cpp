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

double distance(double value, double usual) { return std::abs(value / usual - 1); }

/// A line through points of (pictures so far, sound so far): its slope is the share of a picture.
class Slope {
 public:
  void add(double x, double y) {
    ++count_;
    sumX_ += x;
    sumY_ += y;
    sumXX_ += x * x;
    sumXY_ += x * y;
  }
  [[nodiscard]] std::optional<double> value() const {
    const double spread = count_ * sumXX_ - sumX_ * sumX_;
    if (count_ < 3 || spread <= 0) return std::nullopt;
    return (count_ * sumXY_ - sumX_ * sumY_) / spread;
  }

 private:
  double count_ = 0;
  double sumX_ = 0;
  double sumY_ = 0;
  double sumXX_ = 0;
  double sumXY_ = 0;
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
    } else if (stream == soundNumber_) {
      // The chunk's own place counts for what came before it, so that the first one's lead does not.
      if (pictures_ > 0 && waiting_.size() < kMaxWaiting) waiting_.push_back({bytes_, chunks_});
      bytes_ += size;
      ++chunks_;
    }
  }
  [[nodiscard]] std::optional<SoundShare> found() const {
    if (pictures_ < kFewest || bytes_ <= 0) return std::nullopt;
    const auto bytes = bytesSlope_.value();
    const auto chunks = chunksSlope_.value();
    if (bytes && chunks && *bytes > 0 && *chunks > 0) return SoundShare{*bytes, *chunks};
    // Sound in a few long blocks: all of it came with all of the pictures.
    return SoundShare{bytes_ / pictures_, chunks_ / pictures_};
  }

 private:
  struct Point {
    double bytes = 0;
    double chunks = 0;
  };
  static constexpr std::size_t kMaxWaiting = 4096;
  static constexpr double kFewest = 3;

  std::uint8_t picturesNumber_;
  std::uint8_t soundNumber_;
  double pictures_ = 0;
  double bytes_ = 0;
  double chunks_ = 0;
  std::vector<Point> waiting_;  ///< since the last picture
  Slope bytesSlope_;
  Slope chunksSlope_;
};

/// The likeliest first, at most four.
std::vector<RatePair> pairsWithin(double limit, double samplesPerPicture, bool prefersSlow) {
  struct Ranked {
    RatePair pair;
    std::size_t rank;
  };
  std::vector<Ranked> ranked;
  const auto& rates = prefersSlow ? kSlowSampleRates : kSampleRates;
  for (std::size_t i = 0; i < kPictureRates.size(); ++i) {
    for (std::size_t j = 0; j < rates.size(); ++j) {
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
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (candidates[i].kind() == CandidateKind::data && !StreamCodes::isPalette(candidates[i].suffix()) &&
        chain.closes(i))
      byChain.meet(candidates[i].stream(), candidates[i].size());
  }
  return byChain.found();
}

PictureRate usualPictureRate(double perSecond) {
  constexpr double kNear = 0.005;
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

std::vector<RatePair> usualPairs(double samplesPerPicture, bool prefersSlow) {
  constexpr double kNear = 0.003;
  constexpr double kFar = 0.012;  // what a film of a few blocks of sound may be off
  std::vector<RatePair> pairs = pairsWithin(kNear, samplesPerPicture, prefersSlow);
  return pairs.empty() ? pairsWithin(kFar, samplesPerPicture, prefersSlow) : pairs;
}

}  // namespace zelvo::salvage
