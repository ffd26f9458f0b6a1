/// Sorting millions of values by a number each, in about a fourth of the time that comparing them takes, without memory
/// for a second copy.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>

namespace zelvo::salvage {

/// `numberOf` gives an unsigned number of a value. Of values with the same number the order is not told.
/// Takes eight walks over the values at the most, whatever they are. Thread: any.
template <class Value, class NumberOf>
void sortByNumber(std::span<Value> values, const NumberOf& numberOf) {
  constexpr std::size_t kFew = 96;
  constexpr unsigned kBits = 8;
  constexpr std::size_t kParts = std::size_t{1} << kBits;
  if (values.size() <= kFew) {
    std::ranges::sort(values, {}, numberOf);
    return;
  }
  // The highest bits in which they differ part them.
  std::uint64_t different = 0;
  const std::uint64_t first = std::invoke(numberOf, values.front());
  for (const Value& value : values) different |= std::invoke(numberOf, value) ^ first;
  if (different == 0) return;
  const auto width = static_cast<unsigned>(std::bit_width(different));
  const unsigned shift = width > kBits ? width - kBits : 0;
  const auto partOf = [&](const Value& value) {
    return static_cast<std::size_t>(std::uint64_t{std::invoke(numberOf, value)} >> shift & (kParts - 1));
  };
  std::array<std::size_t, kParts> ends{};
  for (const Value& value : values) ++ends[partOf(value)];
  std::array<std::size_t, kParts> next{};
  std::size_t begin = 0;
  for (std::size_t part = 0; part < kParts; ++part) {
    next[part] = begin;
    begin += ends[part];
    ends[part] = begin;
  }
  for (std::size_t part = 0; part < kParts; ++part) {
    while (next[part] < ends[part]) {
      Value& value = values[next[part]];
      const std::size_t own = partOf(value);
      if (own == part) {
        ++next[part];
      } else {
        std::swap(value, values[next[own]++]);
      }
    }
  }
  if (shift == 0) return;
  begin = 0;
  for (const std::size_t end : ends) {
    if (end - begin > 1) sortByNumber(values.subspan(begin, end - begin), numberOf);
    begin = end;
  }
}

inline void sortNumbers(std::span<std::uint64_t> numbers) { sortByNumber(numbers, std::identity()); }

}  // namespace zelvo::salvage
