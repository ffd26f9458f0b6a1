#include "salvage/headers/header_donor.h"

#include <algorithm>

#include "salvage/headers/picture_shape.h"
#include "salvage/headers/sound_shape.h"
#include "salvage/payloads/payload_shape.h"

namespace zelvo::salvage {

namespace {

bool hasSameSize(const SurvivingStream& stream, const StreamSample& sample) {
  const PictureShape shape = pictureShape(sample, std::nullopt);
  const PictureFormat format = pictureFormat(stream);
  if (shape.codec != codecOf(stream) || shape.codec == Codec::rawPicture || shape.size == PictureSize{}) return true;
  return shape.size == PictureSize{format.width, format.height};
}

bool hasSameSound(const SurvivingStream& stream, const StreamSample& sample) {
  const SoundShape shape = soundShape(sample);
  const SoundFormat format = soundFormat(stream);
  if (shape.codec != codecOf(stream)) return false;
  return shape.rate == 0 || (shape.rate == format.samplesPerSec && shape.channels == format.channels);
}

}  // namespace

bool mayBeOf(const SurvivingStream& stream, const StreamSample& sample) {
  const PayloadShape shape(stream);
  std::size_t contradicts = 0;
  for (const SampledPayload& payload : sample.payloads) {
    if (shape.begins(payload.bytes) == Fit::contradicts) ++contradicts;
  }
  if (contradicts * 5 > sample.payloads.size()) return false;
  if (const auto fixed = shape.fixedSize(); fixed && sample.commonSize() != *fixed) return false;
  if (stream.type == avi::kVids) return hasSameSize(stream, sample);
  const Codec codec = codecOf(stream);
  const bool isTold = codec == Codec::mp3 || codec == Codec::mp2 || codec == Codec::ac3;
  if (stream.type == avi::kAuds && isTold) return hasSameSound(stream, sample);
  return std::ranges::all_of(sample.sizes, [&](std::uint32_t size) { return size % shape.block() == 0; });
}

std::size_t takeFromDonor(FilmHeader& header, const SurvivingHeaders& donor, const std::vector<StreamSample>& lost) {
  if (!donor.areComplete() || donor.streams.size() != header.streams.size() + lost.size()) return 0;
  std::size_t taken = 0;
  for (const StreamSample& sample : lost) {
    const std::uint8_t number = sample.seen.number;
    if (number >= donor.streams.size()) continue;
    const SurvivingStream& stream = donor.streams[number];
    if (stream.type != streamTypeOf(sample.seen.code) || !mayBeOf(stream, sample)) continue;
    FilmStream made{number, sample.seen.code, stream, HeaderOrigin::donor};
    // What another film holds of its own: where its chunks lie, and how they are called.
    made.header.superIndex.reset();
    made.header.name.clear();
    addStream(header, std::move(made));
    ++taken;
  }
  if (taken > 0 && !header.main) header.main = donor.main;
  return taken;
}

}  // namespace zelvo::salvage
