// All three codes begin with '0' and end with 'b' or 'c', three bytes later; hardly any other four bytes do. So whole
// vectors are compared on these two bytes alone, and only where both fit are the four bytes looked at one by one.
#include "engine/code_finder.h"

#include <bit>

#include "engine/data_codes.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace zelvo::engine {

namespace {

void addIfCode(const std::byte* bytes, std::size_t position, FoundCodes& found) {
  if (isDataCode(avi::FourCC::at(std::span(bytes + position, 4)))) found.add(position);
}

void findPortably(const std::byte* bytes, std::size_t positions, FoundCodes& found) {
  found.clear();
  for (std::size_t i = 0; i < positions; ++i) {
    if (bytes[i] == std::byte{'0'}) addIfCode(bytes, i, found);
  }
}

#if defined(__x86_64__)

/// Looks at the positions of the set bits of `fits`, of which bit 0 stands for `first`.
void addEach(const std::byte* bytes, std::size_t first, std::size_t positions, std::uint64_t fits, FoundCodes& found) {
  for (; fits != 0; fits &= fits - 1) {
    const std::size_t position = first + static_cast<std::size_t>(std::countr_zero(fits));
    if (position >= positions) return;
    addIfCode(bytes, position, found);
  }
}

// The compiler's own vector loads take pointers to vectors; unaligned ones are what they are for.
__m128i load16(const std::byte* bytes) {
  return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(bytes)));
}

void findWithSse2(const std::byte* bytes, std::size_t positions, FoundCodes& found) {
  found.clear();
  const __m128i zeroDigit = _mm_set1_epi8('0');
  const __m128i lastLetter = _mm_set1_epi8('c');
  const __m128i lowBit = _mm_set1_epi8(1);
  const auto fitting = [&](const std::byte* at) {
    // 'b' and 'c' differ in the lowest bit only.
    return _mm_and_si128(_mm_cmpeq_epi8(load16(at), zeroDigit),
                         _mm_cmpeq_epi8(_mm_or_si128(load16(at + 3), lowBit), lastLetter));
  };
  for (std::size_t i = 0; i < positions; i += 32) {
    const __m128i low = fitting(bytes + i);
    const __m128i high = fitting(bytes + i + 16);
    if (_mm_movemask_epi8(_mm_or_si128(low, high)) == 0) continue;
    const auto fits = static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm_movemask_epi8(low))) |
                      static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm_movemask_epi8(high))) << 16U;
    addEach(bytes, i, positions, fits, found);
  }
}

__attribute__((target("avx2"))) __m256i load32(const std::byte* bytes) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(static_cast<const void*>(bytes)));
}

__attribute__((target("avx2"))) __m256i fitting32(const std::byte* at) {
  return _mm256_and_si256(
      _mm256_cmpeq_epi8(load32(at), _mm256_set1_epi8('0')),
      _mm256_cmpeq_epi8(_mm256_or_si256(load32(at + 3), _mm256_set1_epi8(1)), _mm256_set1_epi8('c')));
}

__attribute__((target("avx2"))) std::uint64_t bits(__m256i mask) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(mask));
}

__attribute__((target("avx2"))) void findWithAvx2(const std::byte* bytes, std::size_t positions, FoundCodes& found) {
  found.clear();
  for (std::size_t i = 0; i < positions; i += 64) {
    const __m256i low = fitting32(bytes + i);
    const __m256i high = fitting32(bytes + i + 32);
    const __m256i either = _mm256_or_si256(low, high);
    if (_mm256_testz_si256(either, either) != 0) continue;
    addEach(bytes, i, positions, bits(low) | bits(high) << 32U, found);
  }
}

#endif

}  // namespace

CodeFinder::CodeFinder(CodeFinderKind kind) : find_(findPortably) {
#if defined(__x86_64__)
  const bool hasAvx2 = __builtin_cpu_supports("avx2") != 0;
  if (kind == CodeFinderKind::best) kind = hasAvx2 ? CodeFinderKind::avx2 : CodeFinderKind::sse2;
  if (kind == CodeFinderKind::sse2) find_ = findWithSse2;
  if (kind == CodeFinderKind::avx2 && hasAvx2) find_ = findWithAvx2;
#else
  static_cast<void>(kind);
#endif
}

}  // namespace zelvo::engine
