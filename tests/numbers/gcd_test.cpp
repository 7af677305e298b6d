#include "lumo/numbers/gcd.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <numeric>
#include <set>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/random.h"

namespace lumo {
namespace {

using test::Random;

constexpr unsigned long kRow = 1024;
constexpr unsigned long kBound = 1023;

using Pairs = std::set<std::pair<unsigned long, unsigned long>>;

void forget_all() { std::fill(std::begin(gcd_cache), std::end(gcd_cache), 0); }

Pairs filled_entries()
{
  Pairs result;
  for (unsigned long i = 0; i < kRow * kRow; ++i) {
    if (gcd_cache[i] != 0) result.emplace(i / kRow, i % kRow);
  }
  return result;
}

unsigned long absolute(long n)
{
  return n < 0 ? 0UL - static_cast<unsigned long>(n) : static_cast<unsigned long>(n);
}

/// The pairs that a call of gcd(a, b) on an empty table fills: those of its remainder chain within the bound,
/// each in both orders. The chain ends at a pair that is known; if both are
/// within the bound and |a| < |b|, that is already its second pair, which is the first one exchanged.
Pairs chain_entries(long a, long b)
{
  Pairs result;
  unsigned long x = absolute(a);
  unsigned long y = absolute(b);
  while (y != 0 && !result.contains({x, y})) {
    if (x <= kBound && y <= kBound) {
      result.emplace(x, y);
      result.emplace(y, x);
    }
    const unsigned long r = x % y;
    x = y;
    y = r;
  }
  return result;
}

struct GcdCase
{
  long a;
  long b;
  long expected;
};

constexpr GcdCase kCases[] = {
    {0, 0, 0},
    {-12, 18, 6},
    {12, -18, 6},
    {-12, -18, 6},
    {7, 0, 7},
    {-7, 0, 7},
    {0, 7, 7},
    {0, -7, 7},
    {LONG_MAX, 0, LONG_MAX},
    {-LONG_MAX, 0, LONG_MAX},
    {0, LONG_MAX, LONG_MAX},
    {1, LONG_MAX, 1},
    {1023, 1023, 1023},
    {1024, 1024, 1024},
    {1024, 1023, 1},
    {2046, 1023, 1023},
    {LONG_MAX, LONG_MAX, LONG_MAX},
    {LONG_MAX, LONG_MAX - 1, 1},
    {LONG_MIN, 1, 1},
    {LONG_MIN, 6, 2},
    {6, LONG_MIN, 2},
    {LONG_MIN, LONG_MAX, 1},
    {LONG_MIN, 1L << 62, 1L << 62},
    {1836311903, 1134903170, 1},                    // consecutive Fibonacci numbers: the longest chains
    {7540113804746346429, 4660046610375530309, 1},  // the last two of a word
    {3L << 40, 5L << 41, 1L << 40},
};

TEST(Gcd, AnswersAlikeWithAnEmptyAndAFilledTable)
{
  for (const GcdCase& c : kCases) {
    forget_all();
    EXPECT_EQ(gcd(c.a, c.b), c.expected) << c.a << ' ' << c.b;
    EXPECT_EQ(gcd(c.a, c.b), c.expected) << c.a << ' ' << c.b;
  }
}

TEST(Gcd, FillsExactlyTheChainWithinTheBound)
{
  constexpr std::pair<long, long> calls[] = {
      {0, 0},       {5, 0},          {0, 5},       {1, 1},       {610, 987},           {987, 610},
      {-12, 18},    {1023, 1022},    {1023, 1023}, {1024, 1023}, {1023, 1024},         {1000, 1000000007},
      {1024, 1024}, {1000000007, 3}, {0, 1023},    {0, 1024},    {LONG_MAX, LONG_MIN}, {LONG_MIN, -1000},
  };
  for (const auto& [a, b] : calls) {
    forget_all();
    (void)gcd(a, b);
    EXPECT_EQ(filled_entries(), chain_entries(a, b)) << a << ' ' << b;
  }
}

TEST(Gcd, FillsTheChainUpToTheFirstKnownPair)
{
  // 987 610 377 233 144 ... is the chain; 377 233 becomes known before the rest.
  forget_all();
  gcd_cache[377 * kRow + 233] = 1;
  EXPECT_EQ(gcd(987, 610), 1);
  const Pairs expected = {{377, 233}, {987, 610}, {610, 987}, {610, 377}, {377, 610}};
  EXPECT_EQ(filled_entries(), expected);
}

TEST(Gcd, ReturnsAKnownEntryAsItStands)
{
  forget_all();
  gcd_cache[12 * kRow + 18] = 41;
  EXPECT_EQ(gcd(12, 18), 41);
  EXPECT_EQ(gcd(-12, 18), 41);
  EXPECT_EQ(gcd(12 + 18 * 1000, 18), 6) << "the chain starts beyond the bound and continues with 18, 12";
  forget_all();
}

TEST(Gcd, LooksUpPairsThatItMeetsOnTheChain)
{
  forget_all();
  gcd_cache[18 * kRow + 12] = 41;
  EXPECT_EQ(gcd(18 * 1000 + 12, 18), 41);
  forget_all();
}

TEST(Gcd, HoldsOnlyRightEntriesAfterRandomCalls)
{
  Random random;
  SCOPED_TRACE(random);
  forget_all();
  for (int i = 0; i < 100'000; ++i) {
    const long a = random.word();
    const long b = random.flip() ? random.word() : random.between(-1500, 1500);
    ASSERT_EQ(gcd(a, b), std::gcd(a, b)) << a << ' ' << b;
  }
  const Pairs filled = filled_entries();
  EXPECT_GT(filled.size(), 1000U);
  for (const auto& [x, y] : filled) {
    ASSERT_EQ(static_cast<unsigned long>(gcd_cache[x * kRow + y]), std::gcd(x, y)) << x << ' ' << y;
    ASSERT_TRUE(filled.contains({y, x})) << x << ' ' << y;
  }
}

TEST(Gcd, IsRightForEveryPairAroundTheBound)
{
  forget_all();
  for (long a = 1010; a <= 1030; ++a) {
    for (long b = 0; b <= 1030; ++b) {
      ASSERT_EQ(gcd(a, b), std::gcd(a, b)) << a << ' ' << b;
      ASSERT_EQ(gcd(b, a), std::gcd(a, b)) << b << ' ' << a;
    }
  }
}

TEST(CommonFactor, IsTheGcdOfTheCases)
{
  for (const GcdCase& c : kCases) {
    forget_all();
    EXPECT_EQ(common_factor(absolute(c.a), absolute(c.b)), absolute(c.expected)) << c.a << ' ' << c.b;
    EXPECT_EQ(common_factor(absolute(c.b), absolute(c.a)), absolute(c.expected)) << c.a << ' ' << c.b;
  }
}

TEST(CommonFactor, IsTheGcdOfRandomWords)
{
  Random random;
  SCOPED_TRACE(random);
  for (int i = 0; i < 100'000; ++i) {
    const unsigned long factor = random.flip() ? 1 : random.pattern(20);
    const unsigned long x = factor * random.pattern(random.flip() ? 64 : 32);
    const unsigned long y = factor * random.pattern(random.flip() ? 64 : 32);
    ASSERT_EQ(common_factor(x, y), std::gcd(x, y)) << x << ' ' << y;
  }
}

TEST(CommonFactor, IsTheGcdWhereOneIsManyTimesTheOther)
{
  for (const unsigned long y : {1024UL, 1025UL, 1UL << 20, (1UL << 31) - 1, 600UL * 1021}) {
    for (const unsigned long quotient : {1UL, 2UL, 255UL, 256UL, 257UL, 1UL << 20, (1UL << 32) - 1}) {
      for (const unsigned long remainder : {0UL, 1UL, 6UL, 1023UL, 1024UL, y - 1}) {
        const unsigned long x = quotient * y + remainder;
        EXPECT_EQ(common_factor(x, y), std::gcd(x, y)) << x << ' ' << y;
        EXPECT_EQ(common_factor(y, x), std::gcd(x, y)) << x << ' ' << y;
      }
    }
  }
}

TEST(CommonFactor, AsksTheTableIfAnArgumentIsWithinTheBound)
{
  forget_all();
  gcd_cache[12 * kRow + 18] = 41;
  gcd_cache[18 * kRow + 12] = 42;
  EXPECT_EQ(common_factor(12, 18), 41U);
  EXPECT_EQ(common_factor(18'000'012, 18), 42U);
  EXPECT_EQ(common_factor(18, 18'000'012), 42U);
  forget_all();
  EXPECT_EQ(common_factor(610, 987), 1U);
  EXPECT_EQ(filled_entries(), chain_entries(610, 987));
}

TEST(Gcd, MagnitudeTakesEveryWord)
{
  EXPECT_EQ(magnitude(0), 0U);
  EXPECT_EQ(magnitude(-5), 5U);
  EXPECT_EQ(magnitude(LONG_MAX), 0x7fffffffffffffffU);
  EXPECT_EQ(magnitude(-LONG_MAX), 0x7fffffffffffffffU);
  EXPECT_EQ(magnitude(LONG_MIN), 0x8000000000000000U);
}

}  // namespace
}  // namespace lumo
