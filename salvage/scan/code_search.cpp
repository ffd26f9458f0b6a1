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

/// A byte's kinds by its lower and its upper half: it is of those that both halves have.
struct HalfKinds {
  std::array<std::uint8_t, 16> lower{};
  std::array<std::uint8_t, 16> upper{};

  constexpr void add(char character, std::uint8_t kinds) {
    const auto byte = static_cast<std::uint8_t>(character);
    lower[byte % 16] |= kinds;
    upper[byte / 16] |= kinds;
  }
};

// No kind has two characters at one place that differ in both halves: the halves of the one and the other would make
// two more.
constexpr std::uint8_t kDigit = 1;
constexpr std::uint8_t kList = 2;
constexpr std::uint8_t kForm = 4;
constexpr std::uint8_t kJunk = 8;
constexpr std::uint8_t kTable = 16;
constexpr std::uint8_t kStandard = 32;

constexpr HalfKinds firstKinds() {
  HalfKinds kinds;
  for (char digit = '0'; digit <= '9'; ++digit) kinds.add(digit, kDigit);
  kinds.add('L', kList);
  kinds.add('R', kForm);
  kinds.add('J', kJunk);
  kinds.add('i', kTable | kStandard);
  return kinds;
}

constexpr HalfKinds secondKinds() {
  HalfKinds kinds;
  for (char digit = '0'; digit <= '9'; ++digit) kinds.add(digit, kDigit);
  kinds.add('I', kList | kForm);
  kinds.add('U', kJunk);
  kinds.add('d', kTable);
  kinds.add('x', kStandard);
  return kinds;
}

/// The table in both lanes.
__attribute__((target("avx2"))) __m256i lanes(const std::array<std::uint8_t, 16>& table) {
  return _mm256_broadcastsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(&table))));
}

struct VectorKinds {
  __m256i lower;
  __m256i upper;
};

/// Bytes beyond ASCII are of no kind: a shuffle gives zero for them.
__attribute__((target("avx2"))) __m256i kindsOf(__m256i bytes, const VectorKinds& kinds) {
  const __m256i upper = _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(15));
  return _mm256_and_si256(_mm256_shuffle_epi8(kinds.lower, bytes), _mm256_shuffle_epi8(kinds.upper, upper));
}

__attribute__((target("avx2"))) void findWithAvx2(const std::byte* bytes, std::size_t positions,
                                                  std::vector<std::uint32_t>& found) {
  static constexpr HalfKinds kFirstHalves = firstKinds();
  static constexpr HalfKinds kSecondHalves = secondKinds();
  const VectorKinds first{lanes(kFirstHalves.lower), lanes(kFirstHalves.upper)};
  const VectorKinds second{lanes(kSecondHalves.lower), lanes(kSecondHalves.upper)};
  const __m256i digit = _mm256_set1_epi8(kDigit);
  const __m256i zero = _mm256_setzero_si256();
  for (std::size_t i = 0; i < positions; i += 32) {
    const __m256i fitting = _mm256_and_si256(kindsOf(load32(bytes + i), first), kindsOf(load32(bytes + i + 1), second));
    if (_mm256_testz_si256(fitting, fitting) != 0) continue;
    // A third digit: two of a row.
    const __m256i row = _mm256_and_si256(kindsOf(load32(bytes + i + 2), second), digit);
    const __m256i none = _mm256_cmpeq_epi8(_mm256_andnot_si256(row, fitting), zero);
    for (auto fits = ~static_cast<std::uint32_t>(_mm256_movemask_epi8(none)); fits != 0; fits &= fits - 1) {
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
