// Queries of numbers: parts, text, hash, the canonical form and the layout in memory.

#include <array>
#include <climits>
#include <cstring>
#include <functional>
#include <unordered_set>

#include <gtest/gtest.h>

#include "lumo/numbers/qnumber.h"
#include "tests/numbers/number_testing.h"
#include "tests/support/random.h"

namespace lumo {
namespace {

using test::Form;
using test::has_form;
using test::Integer;
using test::kBothForms;
using test::make;
using test::make_power;
using test::Random;
using test::Rational;

struct TextCase
{
  const char* num;
  const char* den;
  const char* text;
  int sign;
  bool is_int;
};

constexpr TextCase kTextCases[] = {
    {"0", "1", "0", 0, true},
    {"1", "1", "1", 1, true},
    {"-1", "1", "-1", -1, true},
    {"10", "4", "5/2", 1, false},
    {"-10", "4", "-5/2", -1, false},
    {"1", "-3", "-1/3", -1, false},
    {"9223372036854775807", "1", "9223372036854775807", 1, true},
    {"-9223372036854775807", "1", "-9223372036854775807", -1, true},
    {"-9223372036854775808", "1", "-9223372036854775808", -1, true},
    {"9223372036854775808", "1", "9223372036854775808", 1, true},
    {"1", "9223372036854775807", "1/9223372036854775807", 1, false},
    {"-1", "9223372036854775808", "-1/9223372036854775808", -1, false},
    {"-100000000000000000000000000000000000000000", "1", "-100000000000000000000000000000000000000000", -1,
     true},
    {"100000000000000000000000000000000000000000", "3", "100000000000000000000000000000000000000000/3", 1,
     false},
};

TEST(QNumberQuery, TextSignAndPartsDependOnTheValueAlone)
{
  for (const TextCase& c : kTextCases) {
    const Rational value{Integer(c.num), Integer(c.den)};
    for (const Form form : kBothForms) {
      if (!has_form(value, form)) continue;
      SCOPED_TRACE(::testing::Message() << c.text << ' ' << form);
      const QNumber number = make(value, form);
      EXPECT_EQ(number.to_string(), c.text);
      EXPECT_EQ(number.sign(), c.sign);
      EXPECT_EQ(number.is_int(), c.is_int);
      EXPECT_EQ(number.is_big(), form == Form::kBig);
      if (number.is_big()) {
        EXPECT_EQ(number.is_int_big(), c.is_int);
      }

      Integer part(77);
      number.get_numerator(part);
      EXPECT_EQ(part, Integer(value.num()));
      number.get_denominator(part);
      EXPECT_EQ(part, Integer(value.den()));
      Integer scratch(77);
      EXPECT_EQ(Integer(number.view_numerator(scratch)), Integer(value.num()));
    }
  }
}

TEST(QNumberQuery, ViewOfABigNumeratorIsNoCopy)
{
  const QNumber number = make_power(70);
  Integer scratch(77);
  mpz_srcptr view = number.view_numerator(scratch);
  EXPECT_TRUE(view == number.view_numerator(scratch));
  EXPECT_TRUE(view != static_cast<mpz_srcptr>(scratch));
  EXPECT_EQ(scratch, Integer(77));

  const QNumber small(5);
  EXPECT_TRUE(small.view_numerator(scratch) == static_cast<mpz_srcptr>(scratch));
  EXPECT_EQ(scratch, Integer(5));
}

struct WordCase
{
  const char* num;
  const char* den;
  bool is_word;
  long word;
};

constexpr WordCase kWordCases[] = {
    {"0", "1", true, 0},
    {"-5", "1", true, -5},
    {"9223372036854775807", "1", true, LONG_MAX},
    {"-9223372036854775807", "1", true, -LONG_MAX},
    {"-9223372036854775808", "1", false, 0},
    {"9223372036854775808", "1", false, 0},
    {"18446744073709551617", "1", false, 0},
    {"-18446744073709551617", "1", false, 0},
    {"1", "2", false, 0},
    {"-7", "9223372036854775807", false, 0},
    {"5", "9223372036854775808", false, 0},
};

TEST(QNumberQuery, WordIsGivenForIntegersThatFit)
{
  for (const WordCase& c : kWordCases) {
    const Rational value{Integer(c.num), Integer(c.den)};
    for (const Form form : kBothForms) {
      if (!has_form(value, form)) continue;
      constexpr long untouched = 4711;
      long word = untouched;
      EXPECT_EQ(make(value, form).get_word(word), c.is_word) << value << ' ' << form;
      EXPECT_EQ(word, c.is_word ? c.word : untouched) << value << ' ' << form;
    }
  }
}

TEST(QNumberHash, IsTheSameInBothForms)
{
  Random random;
  SCOPED_TRACE(random);
  for (int i = 0; i < 20'000; ++i) {
    const Rational value{Integer(random.word()), Integer(random.flip() ? 1 : random.between(1, LONG_MAX))};
    const QNumber small = make(value, Form::kSmall);
    const QNumber big = make(value, Form::kBig);
    ASSERT_EQ(small.hash(), big.hash()) << value;
    ASSERT_EQ(std::hash<QNumber>()(small), small.hash()) << value;
  }
  EXPECT_EQ(QNumber(LONG_MIN).hash(), (make_power(63) - make_power(64)).hash());
}

TEST(QNumberHash, TellsNumbersApart)
{
  std::unordered_set<std::size_t> hashes;
  std::size_t count = 0;
  const auto add = [&](const QNumber& q) {
    hashes.insert(q.hash());
    ++count;
  };
  for (long n = -500; n <= 500; ++n)
    add(QNumber(n));
  for (long d = 2; d <= 500; ++d)
    add(QNumber(1, d));
  for (unsigned long e = 63; e <= 500; ++e) {
    add(make_power(e));
    add(QNumber() - make_power(e, -1));
    add(make_power(e, 1));
  }
  EXPECT_EQ(hashes.size(), count);
}

// The layout is part of the contract of a number: two words, and a block that the first points to if the second is 0.

using Words = std::array<long, 2>;

Words words_of(const QNumber& q)
{
  Words words;
  std::memcpy(words.data(), static_cast<const void*>(&q), sizeof q);
  return words;
}

/// The integers of a big number: the numerator, then the denominator.
mpz_ptr block_of(const QNumber& q) { return reinterpret_cast<mpz_ptr>(words_of(q)[0]); }

TEST(QNumberLayout, SmallIsNumeratorThenDenominator)
{
  EXPECT_EQ(words_of(QNumber()), (Words{0, 1}));
  EXPECT_EQ(words_of(QNumber(-42)), (Words{-42, 1}));
  EXPECT_EQ(words_of(QNumber(42, -8)), (Words{-21, 4}));
  EXPECT_EQ(words_of(QNumber(0, 8)), (Words{0, 1}));
}

TEST(QNumberLayout, BigIsABlockOfTwoIntegersAndAZeroWord)
{
  const QNumber number(Integer::power(80), Integer(-3));
  EXPECT_EQ(words_of(number)[1], 0);
  mpz_srcptr block = block_of(number);
  EXPECT_EQ(Integer(&block[0]), Integer("-1208925819614629174706176"));
  EXPECT_EQ(Integer(&block[1]), Integer(3));
}

TEST(QNumberCanonical, RefusesBrokenWords)
{
  struct Case
  {
    Words words;
    bool canonical;
  };
  constexpr Case cases[] = {
      {{0, 1}, true},         {{1, 1}, true},         {{-1, LONG_MAX}, true}, {{LONG_MAX, 1}, true},
      {{-LONG_MAX, 2}, true}, {{LONG_MIN, 1}, false}, {{LONG_MIN, 3}, false}, {{0, 2}, false},
      {{0, -1}, false},       {{2, 4}, false},        {{1, -2}, false},       {{-1, -1}, false},
      {{1, LONG_MIN}, false}, {{6, 3}, false},        {{3, 3}, false},        {{LONG_MAX, LONG_MAX}, false},
  };
  for (const Case& c : cases) {
    QNumber number;
    std::memcpy(static_cast<void*>(&number), c.words.data(), sizeof number);
    EXPECT_EQ(number.is_canonical(), c.canonical) << c.words[0] << '/' << c.words[1];
  }
}

TEST(QNumberCanonical, RefusesBrokenBlocks)
{
  struct Case
  {
    const char* num;
    const char* den;
    bool canonical;
  };
  constexpr Case cases[] = {
      {"0", "1", true},
      {"7", "1", true},
      {"-9223372036854775808", "1", true},
      {"1180591620717411303424", "3", true},
      {"0", "2", false},
      {"0", "-1", false},
      {"0", "0", false},
      {"1", "0", false},
      {"1", "-1", false},
      {"-1", "-3", false},
      {"6", "4", false},
      {"1180591620717411303424", "2", false},
      {"-1180591620717411303424", "1180591620717411303424", false},
  };
  QNumber number = make_power(70);
  for (const Case& c : cases) {
    mpz_ptr block = block_of(number);
    mpz_set(&block[0], Integer(c.num));
    mpz_set(&block[1], Integer(c.den));
    EXPECT_EQ(number.is_canonical(), c.canonical) << c.num << '/' << c.den;
  }
}

TEST(QNumberCanonical, LookingChangesNoSharedState)
{
  const QNumber small(1, 3);
  const QNumber big(Integer::power(80), Integer(3));
  for (int i = 0; i < 4; ++i)
    mpz_set_si(QNumber::gmp_tmp[i], 1000 + i);
  EXPECT_TRUE(small.is_canonical());
  EXPECT_TRUE(big.is_canonical());
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(mpz_cmp_si(QNumber::gmp_tmp[i], 1000 + i), 0);
}

}  // namespace
}  // namespace lumo
