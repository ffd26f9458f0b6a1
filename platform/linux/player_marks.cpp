#include "platform/linux/player_marks.h"

#include <algorithm>

#include "platform/linux/player_stream.h"

namespace zelvo::platform::linux_ {

std::uint64_t offsetOf(const AVPacket& packet) {
  return packet.pos < 0 ? PlayedPacket::kNowhere : static_cast<std::uint64_t>(packet.pos);
}

std::int64_t stampOf(const AVPacket& packet) { return packet.dts != AV_NOPTS_VALUE ? packet.dts : packet.pts; }

void Marks::packet(const AVPacket& packet, std::uint64_t number) {
  const std::int64_t stamp = stampOf(packet);
  if (offsetOf(packet) == PlayedPacket::kNowhere || stamp == AV_NOPTS_VALUE) return;
  if ((packet.flags & AV_PKT_FLAG_KEY) != 0) lastKey_ = stamp;
  if (count_++ % stride_ != 0) return;
  if (marks_.size() == kMarks) {
    bool isKept = false;
    std::erase_if(marks_, [&isKept](const auto&) { return !(isKept = !isKept); });
    stride_ *= 2;
    if ((count_ - 1) % stride_ != 0) return;
  }
  marks_[number] = {offsetOf(packet), stamp, lastKey_, std::nullopt};
}

void Marks::picture(const AVFrame& frame, std::uint64_t number) {
  const auto mark = marks_.find(number);
  if (mark != marks_.end() && !mark->second.print) mark->second.print = fingerprint(frame);
}

std::vector<Mark> Marks::some(std::size_t count, bool needsPicture) const {
  std::vector<Mark> all;
  for (const auto& [number, mark] : marks_) {
    if (mark.print || !needsPicture) all.push_back(mark);
  }
  std::vector<Mark> chosen;
  count = std::min(count, all.size());
  for (std::size_t i = 0; i < count; ++i) chosen.push_back(all[(2 * i + 1) * all.size() / (2 * count)]);
  return chosen;
}

void OtherTimes::packet(const AVPacket& packet) {
  const std::int64_t stamp = stampOf(packet);
  if (offsetOf(packet) == PlayedPacket::kNowhere || stamp == AV_NOPTS_VALUE || count_ == kMaxPackets) return;
  times_[packet.stream_index].emplace_back(offsetOf(packet), stamp);
  ++count_;
}

void OtherTimes::sort() {
  for (auto& [stream, times] : times_) std::ranges::sort(times);
}

std::optional<std::int64_t> OtherTimes::timeOf(const AVPacket& packet) const {
  const auto stream = times_.find(packet.stream_index);
  if (stream == times_.end()) return std::nullopt;
  const auto found = std::ranges::lower_bound(stream->second, offsetOf(packet), {}, &Times::value_type::first);
  if (found == stream->second.end() || found->first != offsetOf(packet)) return std::nullopt;
  return found->second;
}

std::set<int> OtherTimes::streams() const {
  std::set<int> streams;
  for (const auto& [stream, times] : times_) streams.insert(stream);
  return streams;
}

}  // namespace zelvo::platform::linux_
