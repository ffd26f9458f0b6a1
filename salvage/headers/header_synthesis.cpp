// 1. Each lost stream is recognised by its payloads.
// 2. The picture rate: the user, a header that survives, the codec's own clock, sound whose clock is known against the
//    pictures that it is interleaved with; at last, of samples alone, the likeliest pair of usual rates.
// 3. With that, sample rates follow from the interleaving too. Then the headers are put together.
#include "salvage/headers/header_synthesis.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <utility>

#include "salvage/headers/film_clock.h"
#include "salvage/headers/proved_shape.h"
#include "salvage/headers/stream_header.h"
#include "salvage/headers/trial_shape.h"

namespace zelvo::salvage {

namespace {

std::string shown(double rate) {
  char text[32];
  std::snprintf(text, sizeof text, "%.5g", rate);
  return text;
}

std::string shown(PictureSize size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

std::string shown(avi::FourCC code) {
  if (code.value == 0) return "uncompressed";
  std::string text;
  for (const std::byte byte : code.bytes()) text += static_cast<char>(byte);
  return text;
}

std::string_view shown(Codec codec) {
  switch (codec) {
    case Codec::mp3:
      return "MP3";
    case Codec::mp2:
      return "MPEG layer 2";
    case Codec::ac3:
      return "AC-3";
    case Codec::aac:
      return "AAC";
    case Codec::wma:
      return "Windows Media Audio";
    case Codec::aLaw:
      return "A-law";
    case Codec::muLaw:
      return "mu-law";
    case Codec::imaAdpcm:
      return "IMA ADPCM";
    case Codec::msAdpcm:
      return "Microsoft ADPCM";
    default:
      return "PCM";
  }
}

struct LostSound {
  const StreamSample& sample;
  SoundShape shape;
  std::optional<SoundShare> share;  ///< with a picture
};

struct LostPictures {
  const StreamSample& sample;
  PictureShape shape;
};

class Synthesis {
 public:
  Synthesis(FilmHeader& header, const LostHeaders& lost) : header_(header), lost_(lost) {}

  std::vector<FoundField> perform() {
    recognise();
    findRates();
    for (const LostPictures& pictures : pictures_) add(pictures);
    for (const LostSound& sound : sounds_) add(sound);
    for (const StreamSample& text : texts_) addText(text);
    return std::move(fields_);
  }

 private:
  void recognise() {
    std::optional<PictureSize> known;
    if (header_.main && header_.main->width != 0 && header_.main->height != 0)
      known = PictureSize{header_.main->width, header_.main->height};
    for (const StreamSample& sample : lost_.streams) {
      const avi::FourCC type = streamTypeOf(sample.seen.code);
      if (type == avi::kVids) {
        PictureShape shape = shapeOf(sample, known);
        if (shape.codec != Codec::unknown) pictures_.push_back({sample, std::move(shape)});
      } else if (type == avi::kAuds) {
        sounds_.push_back({sample, soundShape(sample), std::nullopt});
      } else if (type == avi::FourCC{"txts"}) {
        texts_.push_back(sample);
      }
    }
  }

  /// By the marks of its codec; where there are none, by trial.
  [[nodiscard]] PictureShape shapeOf(const StreamSample& sample, std::optional<PictureSize> known) {
    PictureShape shape = pictureShape(sample, known);
    if (lost_.input == nullptr || lost_.decoder == nullptr) return shape;
    const TrialChunks chunks{*lost_.input, lost_.candidates, lost_.chain, sample.seen.number};
    auto tried = provedShape(*lost_.decoder, chunks, sample, known, budget_);
    const auto likely = tried ? std::nullopt : codecWithoutMarks(sample);
    if (likely) tried = tryShapes(*lost_.decoder, chunks, *likely, known, budget_);
    if (!tried) return shape;
    shape.codec = tried->codec;
    shape.compression = tried->compression;
    shape.size = tried->size;
    shape.bits = tried->bits;
    shape.extra = tried->extra;
    return shape;
  }

  /// The number of the film's first stream of pictures.
  [[nodiscard]] std::optional<std::uint8_t> firstPictures() const {
    std::optional<std::uint8_t> first;
    for (const FilmStream& stream : header_.streams) {
      if (stream.header.type == avi::kVids && !first) first = stream.number;
    }
    if (!pictures_.empty() && (!first || pictures_.front().sample.seen.number < *first))
      first = pictures_.front().sample.seen.number;
    return first;
  }

  /// What comes with a picture of a stream that has none.
  [[nodiscard]] std::optional<SoundShare> shareOf(std::uint8_t sound) const {
    const auto pictures = firstPictures();
    if (!pictures) return std::nullopt;
    return soundShare(lost_.index, lost_.candidates, lost_.chain, *pictures, sound);
  }

  void findRates() {
    for (LostSound& sound : sounds_) {
      sound.share = shareOf(sound.sample.seen.number);
      if (lost_.known.samples) sound.shape.rate = *lost_.known.samples;
    }
    rate_ = knownPictureRate();
    if (!rate_) rate_ = rateBySound();
    if (!rate_) rate_ = rateByPairs();
    if (!rate_) rate_ = PictureRate{25, 1};
    for (LostSound& sound : sounds_) findSampleRate(sound);
  }

  [[nodiscard]] std::optional<PictureRate> knownPictureRate() const {
    if (lost_.known.pictures) return usualPictureRate(*lost_.known.pictures);
    for (const FilmStream& stream : header_.streams) {
      if (stream.header.type == avi::kVids && stream.header.scale != 0 && stream.header.rate != 0)
        return PictureRate{stream.header.rate, stream.header.scale};
    }
    if (header_.main && header_.main->microSecPerFrame != 0)
      return usualPictureRate(1e6 / header_.main->microSecPerFrame);
    for (const LostPictures& pictures : pictures_) {
      if (pictures.shape.rate) return pictures.shape.rate;
    }
    return std::nullopt;
  }

  /// By sound that tells how long it lasts.
  [[nodiscard]] std::optional<PictureRate> rateBySound() const {
    for (const FilmStream& stream : header_.streams) {
      if (stream.header.type != avi::kAuds || stream.header.rate == 0 || stream.header.scale == 0) continue;
      const auto share = shareOf(stream.number);
      if (!share) continue;
      const double units = stream.header.sampleSize == 0 ? share->chunks : share->bytes / stream.header.sampleSize;
      return usualPictureRate(stream.header.rate / (units * stream.header.scale), share->error);
    }
    for (const LostSound& sound : sounds_) {
      if (!sound.share) continue;
      double seconds = sound.share->chunks * sound.shape.chunkSeconds();
      if (seconds == 0 && sound.shape.bytesPerSecond != 0) seconds = sound.share->bytes / sound.shape.bytesPerSecond;
      if (seconds == 0 && sound.shape.rate != 0) seconds = samplesAPicture(sound) / sound.shape.rate;
      if (seconds > 0) return usualPictureRate(1 / seconds, sound.share->error);
    }
    return std::nullopt;
  }

  /// Samples of sound that come with a picture.
  [[nodiscard]] static double samplesAPicture(const LostSound& sound) {
    if (sound.shape.isOfFrames) return sound.share->chunks * sound.shape.samples;
    return sound.share->bytes / sound.shape.block * sound.shape.samples;
  }

  /// Samples alone have no clock: only the ratio of both rates is known.
  [[nodiscard]] std::optional<PictureRate> rateByPairs() {
    for (LostSound& sound : sounds_) {
      if (!sound.share) continue;
      const PairsWanted wanted{
          .prefersSlow = isSmall() && (sound.shape.channels == 1 || sound.shape.bits < 16),
          .isOfTapes = sound.shape.codec == Codec::pcm && isOfTapes(sound.sample.sizes, sound.shape.block),
          .error = sound.share->error};
      pairs_ = usualPairs(samplesAPicture(sound), wanted);
      if (pairs_.empty()) continue;
      sound.shape.rate = pairs_.front().samples;
      return pairs_.front().pictures;
    }
    return std::nullopt;
  }

  /// Whether the pictures are of a size that slow recorders had.
  [[nodiscard]] bool isSmall() const {
    constexpr std::uint32_t kWidest = 400;
    return std::ranges::all_of(pictures_, [](const LostPictures& one) { return one.shape.size.width <= kWidest; });
  }

  void findSampleRate(LostSound& sound) const {
    if (sound.shape.rate != 0) return;
    if (sound.share) {
      sound.shape.rate = usualSampleRate(samplesAPicture(sound) * rate_->perSecond());
    } else {
      constexpr std::uint32_t kUsual = 44100;
      sound.shape.rate = sound.shape.channels == 1 ? kUsual / 2 : kUsual;
    }
  }

  void tell(std::uint8_t stream, std::string_view name, std::string value, std::vector<std::string> others = {}) {
    fields_.push_back({stream, std::string(name), std::move(value), std::move(others)});
  }

  void add(const LostPictures& pictures) {
    const std::uint8_t number = pictures.sample.seen.number;
    const PictureShape& shape = pictures.shape;
    addStream(header_,
              {number, pictures.sample.seen.code, makePictureHeader(shape, *rate_), HeaderOrigin::synthesised});
    std::vector<std::string> sizes;
    for (const RawShape& other : shape.others) sizes.push_back(shown(other.size) + ", " + std::to_string(other.bits));
    std::vector<std::string> rates;
    for (std::size_t i = 1; i < pairs_.size(); ++i)
      rates.push_back(shown(pairs_[i].pictures.perSecond()) + " with " + std::to_string(pairs_[i].samples) + " Hz");
    tell(number, "codec", shown(shape.compression));
    tell(number, "size", shown(shape.size), std::move(sizes));
    tell(number, "bits", std::to_string(shape.bits));
    tell(number, "frame rate", shown(rate_->perSecond()), std::move(rates));
  }

  void add(const LostSound& sound) {
    const std::uint8_t number = sound.sample.seen.number;
    const std::uint32_t largest = sound.sample.sizes.empty() ? 0 : sound.sample.sizes.back();
    addStream(header_,
              {number, sound.sample.seen.code, makeSoundHeader(sound.shape, largest), HeaderOrigin::synthesised});
    std::vector<std::string> rates;
    for (std::size_t i = 1; i < pairs_.size(); ++i) rates.push_back(std::to_string(pairs_[i].samples));
    tell(number, "codec", std::string(shown(sound.shape.codec)));
    tell(number, "channels", std::to_string(sound.shape.channels));
    if (sound.shape.bits != 0) tell(number, "bits", std::to_string(sound.shape.bits));
    tell(number, "sample rate", std::to_string(sound.shape.rate), std::move(rates));
  }

  /// Each text follows the one before it after as many pictures as they come with.
  void addText(const StreamSample& text) {
    const std::uint8_t number = text.seen.number;
    const auto share = shareOf(number);
    const PictureRate rate = share ? usualPictureRate(share->chunks * rate_->perSecond()) : PictureRate{1, 1};
    addStream(header_, {number, text.seen.code, makeTextHeader(rate), HeaderOrigin::synthesised});
    tell(number, "rate", shown(rate.perSecond()));
  }

  FilmHeader& header_;
  const LostHeaders& lost_;
  std::vector<LostPictures> pictures_;
  std::vector<LostSound> sounds_;
  std::vector<std::reference_wrapper<const StreamSample>> texts_;
  std::optional<PictureRate> rate_;
  std::vector<RatePair> pairs_;  ///< set when the rates were chosen among these
  std::vector<FoundField> fields_;
  TrialBudget budget_;
};

}  // namespace

std::vector<FoundField> synthesiseHeaders(FilmHeader& header, const LostHeaders& lost) {
  return Synthesis(header, lost).perform();
}

void applyKnownRates(FilmHeader& header, const KnownRates& known) {
  for (FilmStream& stream : header.streams) {
    if (stream.header.type == avi::kVids && known.pictures) {
      const PictureRate rate = usualPictureRate(*known.pictures);
      setClock(stream.header, rate.scale, rate.rate);
      if (header.main) header.main->microSecPerFrame = static_cast<std::uint32_t>(std::lround(1e6 / rate.perSecond()));
    }
    const bool isInSamples = stream.header.type == avi::kAuds && soundFormat(stream.header).samplesPerSec != 0;
    if (!isInSamples || !known.samples) continue;
    setSampleRate(stream.header, *known.samples);
  }
}

}  // namespace zelvo::salvage
