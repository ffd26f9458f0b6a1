/// The copy of a film that a rescue left holes in: nothing of the holes is believed, whatever bytes lie there. Offsets
/// are in bytes. // Decision: runs, What was not rescued reads as zeros
#pragma once

#include <vector>

#include "platform/files.h"
#include "salvage/scan/byte_span.h"

namespace zelvo::salvage {

struct MediaScan;

/// Zeros stand where nothing was rescued; the bytes there are not even read.
/// Thread: any, several at once.
class RescuedFile final : public platform::ReadableFile {
 public:
  /// Borrows both. `lost` rises and its spans are apart.
  RescuedFile(platform::ReadableFile& file, const std::vector<ByteSpan>& lost) : file_(file), lost_(lost) {}

  [[nodiscard]] platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override;
  [[nodiscard]] std::uint64_t size() override { return file_.size(); }

 private:
  platform::ReadableFile& file_;
  const std::vector<ByteSpan>& lost_;
};

/// Tells the scan of a rescued film what was not rescued, and takes away headers of chunks and indexes that begin with
/// zeros in the place of such bytes.
void leaveOutUnrescued(MediaScan& scan, std::vector<ByteSpan> lost);

}  // namespace zelvo::salvage
