// Sorting by a number.
#include "salvage/scan/number_sort.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using Numbers = std::vector<std::uint64_t>;

void expectSorted(Numbers numbers) {
  Numbers expected = numbers;
  std::ranges::sort(expected);
  salvage::sortNumbers(numbers);
  EXPECT_EQ(numbers, expected);
}

TEST(NumberSort, AnyNumbersOfAnyCount) {
  std::mt19937_64 random(7);
  for (const std::size_t count : {0U, 1U, 2U, 95U, 96U, 97U, 1000U, 70'000U}) {
    for (const unsigned width : {1U, 8U, 9U, 24U, 56U, 64U}) {
      Numbers numbers(count);
      for (std::uint64_t& number : numbers) number = random() >> (64U - width);
      expectSorted(numbers);
    }
  }
}

TEST(NumberSort, NumbersThatAreInOrderOrAlikeOrFarApart) {
  Numbers numbers(5000);
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = i * 1000;
  expectSorted(numbers);
  std::ranges::reverse(numbers);
  expectSorted(numbers);
  expectSorted(Numbers(5000, 77));
  numbers.front() = ~std::uint64_t{0};
  numbers.back() = 0;
  expectSorted(numbers);
}

TEST(NumberSort, ValuesGoWithTheirNumbers) {
  struct Named {
    std::uint32_t name = 0;
    std::uint16_t number = 0;
  };
  std::vector<Named> values;
  for (std::uint32_t i = 0; i < 3000; ++i) values.push_back({i, static_cast<std::uint16_t>(i * 7919 % 3001)});
  salvage::sortByNumber(std::span(values), [](const Named& value) { return value.number; });
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(values[i].number, values[i].name * 7919 % 3001);
    EXPECT_TRUE(i == 0 || values[i - 1].number < values[i].number) << i;
  }
}

TEST(NumberSort, EachValueIsLookedAtAFewTimes) {
  // Many alike, and each level parts only one of them from the rest.
  Numbers numbers(20'000, 0);
  for (std::size_t i = 0; i < 64; ++i) numbers[i * 300] = std::uint64_t{1} << i;
  std::size_t looks = 0;
  salvage::sortByNumber(std::span(numbers), [&](std::uint64_t number) {
    ++looks;
    return number;
  });
  EXPECT_TRUE(std::ranges::is_sorted(numbers));
  EXPECT_LT(looks, numbers.size() * 40);
}

}  // namespace
}  // namespace zelvo::tests
