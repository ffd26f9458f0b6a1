/// An AVI file as readable text: a line for every form, list, chunk and header field, each chunk line starting with its
/// offset. Written independently of the engine, from the format alone. Offsets and sizes are in bytes.
#pragma once

#include <span>
#include <string>

namespace zelvo::tests {

/// Chunks are taken to lie back to back, without pad bytes, as the engine writes them. What the file does not hold is
/// marked "cut short".
[[nodiscard]] std::string outlineOf(std::span<const std::byte> avi);

}  // namespace zelvo::tests
