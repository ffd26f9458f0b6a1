#include "engine/candidate_reader.h"

#include "avi/byte_order.h"
#include "engine/data_codes.h"

namespace zelvo::engine {

void CandidateReader::read(const Stretch& stretch, StretchContent& content) {
  content.candidates.clear();
  content.failures.clear();
  for (std::uint32_t i = 0; i < stretch.blocks; ++i) {
    const std::uint32_t block = stretch.firstBlock + i;
    readBlock(block, content.candidates);
    if (const avi::ReadFailures failures = window_.takeFailures(); failures.count > 0) {
      content.failures.push_back({block, failures});
    }
  }
}

void CandidateReader::readBlock(std::uint32_t block, std::vector<Candidate>& candidates) {
  std::size_t positions = ScanWindow::kBlockSize;
  std::size_t ownRead = ScanWindow::kBlockSize + ScanWindow::kReadAhead;
  if (block == last_) {
    // Deliberate: of the last block only `mod` bytes count, which is none when the size is a multiple of 1024.
    // Decision: scan, The last block is cut, values are not
    if (mod_ == 0) return;
    positions = mod_ < 4 ? 0 : mod_ - 3;
    ownRead = mod_;
  }
  const std::span<const std::byte> bytes = window_.block(block, last_, ownRead);
  finder_.find(bytes, positions, found_);
  const std::size_t valid = window_.validFrom(block);
  const bool isDense = window_.isDense();
  if (isDense) window_.expectLookAheads(block, found_.positions());
  std::size_t next = candidates.size();
  candidates.resize(next + found_.positions().size());
  for (const std::uint16_t i : found_.positions()) {
    Candidate& candidate = candidates[next++];
    candidate.block = block;
    candidate.inBlock = i;
    candidate.code = avi::FourCC::at(bytes.subspan(i));
    // Deliberate: these sums wrap at 32 bits, as block offsets do. // Decision: scan, Scan offsets wrap at 32 bits
    const std::uint32_t position = candidate.position();
    candidate.size = i + std::size_t{8} <= valid ? avi::loadLittleEndian32(bytes.subspan(i + std::size_t{4}).first<4>())
                                                 : window_.numberAt(position + 4);
    if (candidate.sizeIsRefused()) continue;
    const std::uint32_t payloadEnd = position + 8 + candidate.size;
    if (isDense) candidate.found = window_.foundBeyond(payloadEnd);
    if (!candidate.found) {
      candidate.lookAheadCount = static_cast<std::uint8_t>(window_.readLookAhead(payloadEnd, candidate.lookAhead));
    }
    // Silence may be all zeros; a picture is not, which its first byte tells nearly always.
    const std::size_t payload = i + std::size_t{8};
    // Decision: scan, Blank pictures do not count
    const bool mayBeBlank = payload >= bytes.size() || bytes[payload] == std::byte{0};
    candidate.isBlank =
        mayBeBlank && isPictureCode(candidate.code) && window_.isAllZero(position + std::uint64_t{8}, candidate.size);
  }
}

}  // namespace zelvo::engine
