/// What a binary property list would take once it is read. One object of it may stand in many places, and a reader
/// writes it out in each: a list of 147 bytes can make gigabytes. Sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zelvo::platform::linux_ {

/// True when the bytes begin as a binary list does.
[[nodiscard]] bool isBinaryList(std::span<const std::byte> bytes);

/// True when the binary list is whole as far as its objects lead, has texts without a character zero for keys (the
/// library ends the process over others), nests no deeper than `deepest` levels, and takes no
/// more than `most` bytes (64 for each object in each place, and its text or data) once written out. Takes about as
/// long as reading a list of that cost. Thread: any; needs little stack.
[[nodiscard]] bool isReadable(std::span<const std::byte> binaryList, std::size_t deepest, std::uint64_t most);

}  // namespace zelvo::platform::linux_
