// Two bytes tell enough: in compressed data fewer than two in a thousand positions pass. As many positions as a
// vector has bytes are compared at once, and only where some pass are third bytes compared, lest a row of digits be a
// row of codes.
#include "salvage/scan/code_search.h"

#include <array>
#include <bit>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace zelvo::salvage {

namespace {

using Classes = std::array<std::uint8_t, 256>;

constexpr std::uint8_t kDigits = 1;
constexpr std::uint8_t kListOrForm = 2;
constexpr std::uint8_t kJunkBegins = 4;
constexpr std::uint8_t kIndexBegins = 8;

constexpr Classes firstBytes() {
  Classes classes{};
  for (std::size_t digit = '0'; digit <= '9'; ++digit) classes[digit] = kDigits;
  classes['L'] = classes['R'] = kListOrForm;
  classes['J'] = kJunkBegins;
  classes['i'] = kIndexBegins;
  return classes;
}

constexpr Classes secondBytes() {
  Classes classes{};
  for (std::size_t digit = '0'; digit <= '9'; ++digit) classes[digit] = kDigits;
  classes['I'] = kListOrForm;
  classes['U'] = kJunkBegins;
  classes['d'] = classes['x'] = kIndexBegins;
  return classes;
}

constexpr Classes kFirst = firstBytes();
constexpr Classes kSecond = secondBytes();

}  // namespace

void findCodeBeginningsPortably(std::span<const std::byte> bytes, std::size_t positions,
                                std::vector<std::uint32_t>& found) {
  for (std::size_t i = 0; i < positions; ++i) {
    const auto classOf = [&](const Classes& classes, std::size_t at) {
      return classes[static_cast<std::size_t>(bytes[at])];
    };
    const auto fits = static_cast<std::uint8_t>(classOf(kFirst, i) & classOf(kSecond, i + 1));
    if (fits == 0 || (fits == kDigits && classOf(kFirst, i + 2) == kDigits)) continue;
    found.push_back(static_cast<std::uint32_t>(i));
  }
}

#if defined(__x86_64__)

namespace {

// The compiler's own vector loads take pointers to vectors; unaligned ones are what they are for.
__m128i load16(const std::byte* bytes) {
  return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(bytes)));
}

__m128i isDigit(__m128i bytes) {
  const __m128i above = _mm_sub_epi8(bytes, _mm_set1_epi8('0'));
  return _mm_cmpeq_epi8(_mm_min_epu8(above, _mm_set1_epi8(9)), above);
}

__m128i is(__m128i bytes, char character) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(character)); }

std::uint32_t beginnings(const std::byte* at) {
  const __m128i first = load16(at);
  const __m128i second = load16(at + 1);
  const __m128i digits = _mm_and_si128(isDigit(first), isDigit(second));
  const __m128i listOrForm = _mm_and_si128(_mm_or_si128(is(first, 'L'), is(first, 'R')), is(second, 'I'));
  const __m128i junk = _mm_and_si128(is(first, 'J'), is(second, 'U'));
  const __m128i index = _mm_and_si128(is(first, 'i'), _mm_or_si128(is(second, 'd'), is(second, 'x')));
  const __m128i letters = _mm_or_si128(listOrForm, _mm_or_si128(junk, index));
  if (_mm_movemask_epi8(_mm_or_si128(digits, letters)) == 0) return 0;
  const __m128i any = _mm_or_si128(_mm_andnot_si128(isDigit(load16(at + 2)), digits), letters);
  return static_cast<std::uint32_t>(_mm_movemask_epi8(any));
}

void findWithSse2(const std::byte* bytes, std::size_t positions, std::vector<std::uint32_t>& found) {
  for (std::size_t i = 0; i < positions; i += 16) {
    for (std::uint32_t fits = beginnings(bytes + i); fits != 0; fits &= fits - 1) {
      const std::size_t position = i + static_cast<std::size_t>(std::countr_zero(fits));
      if (position >= positions) return;
      found.push_back(static_cast<std::uint32_t>(position));
    }
  }
}

__attribute__((target("avx2"))) __m256i load32(const std::byte* bytes) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(static_cast<const void*>(bytes)));
}

__attribute__((target("avx2"))) __m256i areDigits(__m256i bytes) {
  const __m256i above = _mm256_sub_epi8(bytes, _mm256_set1_epi8('0'));
  return _mm256_cmpeq_epi8(_mm256_min_epu8(above, _mm256_set1_epi8(9)), above);
}

__attribute__((target("avx2"))) __m256i are(__m256i bytes, char character) {
  return _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(character));
}

__attribute__((target("avx2"))) void findWithAvx2(const std::byte* bytes, std::size_t positions,
                                                  std::vector<std::uint32_t>& found) {
  for (std::size_t i = 0; i < positions; i += 32) {
    const __m256i first = load32(bytes + i);
    const __m256i second = load32(bytes + i + 1);
    const __m256i digits = _mm256_and_si256(areDigits(first), areDigits(second));
    const __m256i listOrForm = _mm256_and_si256(_mm256_or_si256(are(first, 'L'), are(first, 'R')), are(second, 'I'));
    const __m256i junk = _mm256_and_si256(are(first, 'J'), are(second, 'U'));
    const __m256i index = _mm256_and_si256(are(first, 'i'), _mm256_or_si256(are(second, 'd'), are(second, 'x')));
    const __m256i letters = _mm256_or_si256(listOrForm, _mm256_or_si256(junk, index));
    const __m256i either = _mm256_or_si256(digits, letters);
    if (_mm256_testz_si256(either, either) != 0) continue;
    const __m256i all = _mm256_or_si256(_mm256_andnot_si256(areDigits(load32(bytes + i + 2)), digits), letters);
    for (auto fits = static_cast<std::uint32_t>(_mm256_movemask_epi8(all)); fits != 0; fits &= fits - 1) {
      const std::size_t position = i + static_cast<std::size_t>(std::countr_zero(fits));
      if (position >= positions) return;
      found.push_back(static_cast<std::uint32_t>(position));
    }
  }
}

}  // namespace

void findCodeBeginnings(std::span<const std::byte> bytes, std::size_t positions, std::vector<std::uint32_t>& found) {
  static const bool hasAvx2 = __builtin_cpu_supports("avx2") != 0;
  (hasAvx2 ? findWithAvx2 : findWithSse2)(bytes.data(), positions, found);
}

#else

void findCodeBeginnings(std::span<const std::byte> bytes, std::size_t positions, std::vector<std::uint32_t>& found) {
  findCodeBeginningsPortably(bytes, positions, found);
}

#endif

}  // namespace zelvo::salvage
