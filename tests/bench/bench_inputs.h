/// Inputs for the benchmarks: AVI files of a given size, the same bytes every time.
#pragma once

#include <cstdint>
#include <string>

namespace zelvo::tests {

/// Writes an input of about `size` bytes. `kind` is "frames" (video of 10 to 100 KB, audio of 2 KB), "small" (chunks of
/// about 1 KB), "dense" (a candidate with a valid size every 8 bytes) or "full" (more chunks of both kinds than the
/// tables hold, whatever `size` says). False for another kind or when it cannot be written.
[[nodiscard]] bool makeInput(const std::string& kind, const std::string& path, std::uint64_t size);

}  // namespace zelvo::tests
