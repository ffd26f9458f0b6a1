/// Reads that a stop need not wait for: a dying disk, or a server that is gone, may answer none of them for minutes.
/// Offsets and sizes are in bytes.
#pragma once

#include <memory>
#include <span>

#include "platform/files.h"
#include "platform/workers.h"

namespace zelvo::salvage {

/// What the system has in memory is read at once. The rest is read by a thread apart, which is left behind with the
/// file when it hangs after a stop, and ends by itself once it does no more.
/// Thread: any, several at once; reads of the disk come one after the other.
class StoppableReads final : public platform::ReadableFile {
 public:
  /// \pre `cancel` and `workers` outlive it.
  StoppableReads(std::shared_ptr<platform::ReadableFile> file, const platform::CancelMark& cancel,
                 platform::Workers& workers);
  StoppableReads(const StoppableReads&) = delete;
  StoppableReads& operator=(const StoppableReads&) = delete;
  ~StoppableReads() override;

  /// Failure: std::errc::operation_canceled within some milliseconds after `cancel` was abandoned. Where there is no
  /// thread to be had, reads are waited for.
  [[nodiscard]] platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override;
  [[nodiscard]] std::uint64_t size() override { return file_->size(); }

 private:
  struct Apart;
  static void serve(const std::shared_ptr<Apart>& apart);
  [[nodiscard]] platform::IoResult readApart(std::uint64_t offset, std::span<std::byte> into);

  const std::shared_ptr<platform::ReadableFile> file_;
  const platform::CancelMark& cancel_;
  platform::Workers& workers_;
  const std::shared_ptr<Apart> apart_;
};

}  // namespace zelvo::salvage
