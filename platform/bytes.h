/// A byte buffer that owns what it holds. Sizes are in bytes.
#pragma once

#include <cstddef>
#include <vector>

namespace zelvo::platform {

using Bytes = std::vector<std::byte>;

}  // namespace zelvo::platform
