/// A write that failed.
#pragma once

#include <cstdint>
#include <system_error>

namespace zelvo::avi {

struct WriteFailure {
  std::uint64_t offset = 0;  ///< where in the file that was written, in bytes
  std::error_code cause;
};

}  // namespace zelvo::avi
