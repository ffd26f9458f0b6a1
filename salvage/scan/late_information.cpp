#include "salvage/scan/late_information.h"

#include <span>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"

namespace zelvo::salvage {

namespace {

constexpr std::size_t kType = 4;
/// Lists that only look like it are not read one and all.
constexpr int kMaxReads = 64;

/// Whether chunks with printable codes fill the bytes; the pad byte of the last one may be missing.
bool isFilledByChunks(std::span<const std::byte> bytes) {
  while (bytes.size() >= avi::kChunkHeader) {
    const std::uint32_t size = avi::loadLittleEndian32(bytes.subspan<4, 4>());
    if (!avi::isPrintable(avi::FourCC::at(bytes)) || size > bytes.size() - avi::kChunkHeader) return false;
    bytes = bytes.subspan(avi::kChunkHeader + size);
    if (size % 2 != 0 && !bytes.empty()) bytes = bytes.subspan(1);
  }
  return bytes.empty();
}

}  // namespace

platform::Bytes informationAfterMedia(avi::InputFile& input, const CandidateList& candidates) {
  int reads = 0;
  for (std::size_t i = candidates.size(); i-- > 0 && reads < kMaxReads;) {
    const Candidate& list = candidates[i];
    if (list.kind() != CandidateKind::skipped || list.head() != avi::kInfo.value) continue;
    if (list.size() <= kType + avi::kChunkHeader || list.size() > kMaxInformation) continue;
    ++reads;
    const std::size_t size = list.size() - kType;
    platform::Bytes content = input.readBytes(list.offset() + avi::kChunkHeader + kType, size);
    if (content.size() == size && isFilledByChunks(content)) return content;
  }
  return {};
}

}  // namespace zelvo::salvage
