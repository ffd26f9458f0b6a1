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

CodeBits bitsPortably(const std::byte* bytes) {
  CodeBits bits;
  for (unsigned i = 0; i < 64; ++i) {
    const avi::FourCC code = avi::FourCC::at(std::span(bytes + i, 4));
    if (isDataCode(code)) bits.data |= std::uint64_t{1} << i;
    if (code == avi::kJunk) bits.padding |= std::uint64_t{1} << i;
  }
  return bits;
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

CodeBits bitsOf16(const std::byte* at) {
  const auto is = [at](std::size_t place, char letter) {
    return _mm_cmpeq_epi8(load16(at + place), _mm_set1_epi8(letter));
  };
  const auto all = [](__m128i a, __m128i b) { return _mm_and_si128(a, b); };
  const auto any = [](__m128i a, __m128i b) { return _mm_or_si128(a, b); };
  const __m128i picture = all(all(is(1, '0'), is(2, 'd')), any(is(3, 'b'), is(3, 'c')));
  const __m128i sound = all(all(is(1, '1'), is(2, 'w')), is(3, 'b'));
  const __m128i data = all(is(0, '0'), any(picture, sound));
  const __m128i padding = all(all(is(0, 'J'), is(1, 'U')), all(is(2, 'N'), is(3, 'K')));
  return {static_cast<std::uint32_t>(_mm_movemask_epi8(data)), static_cast<std::uint32_t>(_mm_movemask_epi8(padding))};
}

CodeBits bitsWithSse2(const std::byte* bytes) {
  CodeBits bits;
  for (unsigned i = 0; i < 64; i += 16) {
    const CodeBits part = bitsOf16(bytes + i);
    bits.data |= part.data << i;
    bits.padding |= part.padding << i;
  }
  return bits;
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
  for (std::size_t i = 0; i < positions; i += 128) {
    const __m256i first = fitting32(bytes + i);
    const __m256i second = fitting32(bytes + i + 32);
    const __m256i third = fitting32(bytes + i + 64);
    const __m256i fourth = fitting32(bytes + i + 96);
    const __m256i any = _mm256_or_si256(_mm256_or_si256(first, second), _mm256_or_si256(third, fourth));
    if (_mm256_testz_si256(any, any) != 0) continue;
    addEach(bytes, i, positions, bits(first) | bits(second) << 32U, found);
    addEach(bytes, i + 64, positions, bits(third) | bits(fourth) << 32U, found);
  }
}

__attribute__((target("avx2"))) __m256i is32(const std::byte* at, char letter) {
  return _mm256_cmpeq_epi8(load32(at), _mm256_set1_epi8(letter));
}

__attribute__((target("avx2"))) CodeBits bitsOf32(const std::byte* at) {
  const __m256i picture = _mm256_and_si256(_mm256_and_si256(is32(at + 1, '0'), is32(at + 2, 'd')),
                                           _mm256_or_si256(is32(at + 3, 'b'), is32(at + 3, 'c')));
  const __m256i sound = _mm256_and_si256(_mm256_and_si256(is32(at + 1, '1'), is32(at + 2, 'w')), is32(at + 3, 'b'));
  const __m256i data = _mm256_and_si256(is32(at, '0'), _mm256_or_si256(picture, sound));
  const __m256i padding = _mm256_and_si256(_mm256_and_si256(is32(at, 'J'), is32(at + 1, 'U')),
                                           _mm256_and_si256(is32(at + 2, 'N'), is32(at + 3, 'K')));
  return {bits(data), bits(padding)};
}

__attribute__((target("avx2"))) CodeBits bitsWithAvx2(const std::byte* bytes) {
  const CodeBits low = bitsOf32(bytes);
  const CodeBits high = bitsOf32(bytes + 32);
  return {low.data | high.data << 32U, low.padding | high.padding << 32U};
}

#endif

}  // namespace

CodeFinder::CodeFinder(CodeFinderKind kind) : find_(findPortably), bits_(bitsPortably) {
#if defined(__x86_64__)
  const bool hasAvx2 = __builtin_cpu_supports("avx2") != 0;
  if (kind == CodeFinderKind::best) kind = hasAvx2 ? CodeFinderKind::avx2 : CodeFinderKind::sse2;
  if (kind == CodeFinderKind::sse2) {
    find_ = findWithSse2;
    bits_ = bitsWithSse2;
  }
  if (kind == CodeFinderKind::avx2 && hasAvx2) {
    find_ = findWithAvx2;
    bits_ = bitsWithAvx2;
  }
#else
  static_cast<void>(kind);
#endif
}

}  // namespace zelvo::engine
