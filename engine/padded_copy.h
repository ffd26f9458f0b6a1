/// The copy of a save: whole 32 KiB blocks, the last one padded with zeros, then the last block's front once more.
/// Sizes and positions are in bytes. // Decision: writer, The save's copy lives in the engine
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "avi/input_file.h"
#include "avi/write_failure.h"
#include "platform/files.h"

namespace zelvo::engine {

inline constexpr std::uint64_t kPaddedBlockSize = 32768;

/// Length of the copy of a file of `size` bytes.
[[nodiscard]] constexpr std::uint64_t paddedCopySize(std::uint64_t size) {
  const std::uint64_t rest = size % kPaddedBlockSize;
  return rest == 0 ? size : (size / kPaddedBlockSize + 1) * kPaddedBlockSize + rest;
}

/// How a copy ended.
struct PaddedCopyEnd {
  std::optional<avi::WriteFailure> writeFailure;  ///< the first write that failed; the copy ended there
  avi::ReadFailures readFailures;
  /// Bytes of the input that were asked for and not read, whether a read failed or the input is shorter than told. They
  /// are zeros in the copy.
  std::uint64_t missing = 0;
};

/// Copies `size` bytes of `from` to `to`.
/// Deliberate: when `size` is no multiple of 32768 the last block is written in full, padded with zeros, and its front
/// (as many bytes as the remainder) is written again after it. A part of the input that cannot be read, or all of it
/// when `from` is missing, is copied as zeros.
/// `betweenBlocks`, when given, is told every few blocks how many bytes of the input are done; on false the copy ends.
[[nodiscard]] PaddedCopyEnd paddedCopy(platform::ReadableFile* from, platform::WritableFile& to, std::uint64_t size,
                                       const std::function<bool(std::uint64_t)>& betweenBlocks = {});

}  // namespace zelvo::engine
