/// Makes the file that a repair writes, once its length is known. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <system_error>

#include "platform/files.h"

namespace zelvo::engine {

/// Thread: the one that repairs.
class OutputMaker {
 public:
  virtual ~OutputMaker() = default;

  struct Made {
    platform::WritableFile* file = nullptr;  ///< the maker's; it stays open until `close`
    std::error_code error;                   ///< why there is none
    bool refused = false;                    ///< there is none, and none was created, since nobody wants it
  };
  /// Asked once, before anything is written: an empty file for `size` bytes.
  /// Decision: writer, The need is told before the output exists
  [[nodiscard]] virtual Made make(std::uint64_t size) = 0;

  /// Everything is written, or given up. A failure counts as one of the last write.
  [[nodiscard]] virtual std::error_code close() = 0;
};

}  // namespace zelvo::engine
