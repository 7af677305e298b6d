#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/term_manager.h"
#include "tests/support/number.h"
#include "tests/support/random.h"
#include "tests/support/refusal.h"

namespace lumo::test {

namespace {

QNumber value_of(const TermManager& mgr, const Term* t)
{
  QNumber value(-12345);
  EXPECT_TRUE(mgr.is_number(t->get_symbol(), &value));
  return value;
}

/// Whether the numeral factory may be called with a T.
template <class T>
concept MakesNumeral = requires(TermManager& mgr, T n)
{
  mgr.make_bv_number(n, 8UL);
};

}  // namespace

// -----------------------------------------------------------------------------------------------------------
// the recogniser

TEST(Numerals, AreRecognisedWithoutAskingForTheValue)
{
  TermManager mgr;
  EXPECT_TRUE(mgr.is_number(mgr.make_bv_number(5, 8)->get_symbol(), nullptr));
}

TEST(Numerals, ShowTheirValueWithoutACopy)
{
  TermManager mgr;
  const QNumber big = BVNumber::pow2(70) - QNumber(1);
  const QNumber* small_value = mgr.find_number(mgr.make_bv_number(5, 8)->get_symbol());
  const QNumber* big_value = mgr.find_number(mgr.make_bv_number(big, 70)->get_symbol());
  ASSERT_NE(small_value, nullptr);
  ASSERT_NE(big_value, nullptr);
  for (int i = 0; i < 1000; ++i)
    mgr.make_bv_number(i, 16);
  EXPECT_EQ(*small_value, QNumber(5)) << "whatever is made later";
  EXPECT_EQ(*big_value, big);
}

TEST(Numerals, NothingIsOneWhileThereAreNone)
{
  TermManager mgr;
  QNumber out(77);
  for (const Symbol* s : {mgr.get_true_symbol(), mgr.get_false_symbol(), mgr.make_bv_add_symbol(8),
                          mgr.make_constant_symbol("x", mgr.make_bv_type(8))})
  {
    EXPECT_FALSE(mgr.is_number(s, nullptr));
    EXPECT_FALSE(mgr.is_number(s, &out));
    EXPECT_EQ(out, QNumber(77));
  }
  EXPECT_TRUE(mgr.get_numerals().empty());
}

TEST(Numerals, OtherSymbolsAreNoneAndLeaveTheOutputAlone)
{
  TermManager mgr;
  for (int i = 0; i < 100; ++i)
    mgr.make_bv_number(i, 8);
  QNumber small(77);
  QNumber big = BVNumber::pow2(70);
  for (const Symbol* s : {mgr.get_true_symbol(), mgr.get_false_symbol(), mgr.make_bv_add_symbol(8),
                          mgr.make_constant_symbol("#x05", mgr.make_bv_type(8)), mgr.make_not_symbol()})
  {
    EXPECT_FALSE(mgr.is_number(s, nullptr));
    EXPECT_FALSE(mgr.is_number(s, &small));
    EXPECT_FALSE(mgr.is_number(s, &big));
    EXPECT_EQ(mgr.find_number(s), nullptr);
  }
  EXPECT_EQ(small, QNumber(77));
  EXPECT_EQ(big, BVNumber::pow2(70));
}

TEST(Numerals, OfAnotherManagerAreNotRecognised)
{
  TermManager mgr;
  TermManager other;
  const Symbol* foreign = other.make_bv_number(5, 8)->get_symbol();
  QNumber out(77);
  EXPECT_FALSE(mgr.is_number(foreign, &out));
  EXPECT_EQ(mgr.find_number(foreign), nullptr);
  for (int i = 0; i < 200; ++i)
    mgr.make_bv_number(i, 8);
  EXPECT_FALSE(mgr.is_number(foreign, &out));
  EXPECT_EQ(mgr.find_number(foreign), nullptr);
  EXPECT_EQ(out, QNumber(77));
}

TEST(Numerals, AreWrittenToOutputsOfBothForms)
{
  TermManager mgr;
  const QNumber small_value(5);
  const QNumber big_value = BVNumber::pow2(63) + small_value;
  const Symbol* small = mgr.make_bv_number(small_value, 64)->get_symbol();
  const Symbol* big = mgr.make_bv_number(big_value, 64)->get_symbol();

  QNumber into_small;
  EXPECT_TRUE(mgr.is_number(small, &into_small));
  EXPECT_EQ(into_small, small_value);
  EXPECT_FALSE(into_small.is_big());

  QNumber into_big = BVNumber::pow2(200);
  EXPECT_TRUE(mgr.is_number(small, &into_big));
  EXPECT_EQ(into_big, small_value);
  EXPECT_TRUE(into_big.is_big());

  EXPECT_TRUE(mgr.is_number(big, &into_small));
  EXPECT_EQ(into_small, big_value);
  EXPECT_TRUE(into_small.is_big());

  EXPECT_TRUE(mgr.is_number(big, &into_big));
  EXPECT_EQ(into_big, big_value);
  EXPECT_TRUE(into_big.is_big());
}

TEST(Numerals, AreWrittenOverARational)
{
  TermManager mgr;
  QNumber small(1, 3);
  QNumber big = in_big_form(QNumber(1, 3));
  EXPECT_TRUE(mgr.is_number(mgr.make_bv_number(5, 8)->get_symbol(), &small));
  EXPECT_TRUE(mgr.is_number(mgr.make_bv_number(5, 8)->get_symbol(), &big));
  EXPECT_EQ(small, QNumber(5));
  EXPECT_EQ(big, QNumber(5));
}

TEST(Numerals, KeepTheirValuesWhateverBecomesOfTheOutput)
{
  TermManager mgr;
  const Term* t = mgr.make_bv_number(BVNumber::pow2(100), 128);
  QNumber out = value_of(mgr, t);
  out += QNumber(1);
  EXPECT_EQ(value_of(mgr, t), BVNumber::pow2(100));
}

// -----------------------------------------------------------------------------------------------------------
// the factory

TEST(Numerals, HaveTheirValueModuloTheWidth)
{
  TermManager mgr;
  EXPECT_EQ(mgr.make_bv_number(QNumber(256), 8), mgr.make_bv_number(QNumber(0), 8));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(QNumber(-1), 8)), QNumber(255));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(-1, 8)), QNumber(255));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(1, 1)), QNumber(1));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(2, 1)), QNumber(0));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(QNumber(-257), 8)), QNumber(255));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(BVNumber::pow2(200) - QNumber(3), 8)), QNumber(253));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(QNumber(-3) - BVNumber::pow2(200), 8)), QNumber(253));
}

TEST(Numerals, WrapAtTheirWidthWhateverTheWidth)
{
  for (const unsigned long w :
       {1UL, 2UL, 31UL, 32UL, 33UL, 61UL, 62UL, 63UL, 64UL, 65UL, 127UL, 128UL, 1000UL}) {
    TermManager mgr;
    const QNumber limit = BVNumber::pow2(w);
    const QNumber last = limit - QNumber(1);
    EXPECT_EQ(value_of(mgr, mgr.make_bv_number(last, w)), last) << w;
    EXPECT_EQ(value_of(mgr, mgr.make_bv_number(-1, w)), last) << w;
    EXPECT_EQ(value_of(mgr, mgr.make_bv_number(limit, w)), QNumber(0)) << w;
    EXPECT_EQ(value_of(mgr, mgr.make_bv_number(limit + last, w)), last) << w;
    EXPECT_EQ(value_of(mgr, mgr.make_bv_number(QNumber(0) - limit, w)), QNumber(0)) << w;
    EXPECT_EQ(value_of(mgr, mgr.make_bv_number(QNumber(0) - last, w)), QNumber(1)) << w;
    EXPECT_EQ(mgr.get_numerals().size(), w == 1 ? 2 : 3) << w;
  }
}

TEST(Numerals, OfWordLimitsWrapAtNarrowWidths)
{
  TermManager mgr;
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(QNumber(LONG_MIN), 64)), BVNumber::pow2(63));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(QNumber(LONG_MIN), 63)), QNumber(0));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(QNumber(LONG_MAX), 63)), QNumber(LONG_MAX));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(QNumber(LONG_MAX), 62)), BVNumber::pow2(62) - QNumber(1));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(INT_MIN, 32)), BVNumber::pow2(31));
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(INT_MIN, 64)), BVNumber::pow2(64) - BVNumber::pow2(31));
}

TEST(Numerals, AreOneObjectPerValueAndWidth)
{
  TermManager mgr;
  const Term* five = mgr.make_bv_number(5, 8);
  const std::size_t num_terms = mgr.get_num_terms();
  EXPECT_EQ(mgr.make_bv_number(5, 8), five);
  EXPECT_EQ(mgr.make_bv_number(QNumber(5), 8), five);
  EXPECT_EQ(mgr.make_bv_number(QNumber(10, 2), 8), five);
  EXPECT_EQ(mgr.make_bv_number(QNumber(5 - 256), 8), five);
  EXPECT_EQ(mgr.get_num_terms(), num_terms);
  EXPECT_NE(mgr.make_bv_number(6, 8), five);
  EXPECT_NE(mgr.make_bv_number(5, 9), five);
  EXPECT_EQ(five->get_symbol()->get_output_type(), mgr.make_bv_type(8));
  EXPECT_FALSE(mgr.is_constant(five->get_symbol()));
  EXPECT_EQ(five->get_num_args(), 0);
}

TEST(Numerals, OfEqualNumbersInBothFormsAreOne)
{
  for (const bool small_first : {true, false}) {
    TermManager mgr;
    for (const unsigned long w : {8UL, 62UL, 63UL, 64UL, 128UL}) {
      for (const long n : {0L, 1L, 5L, -1L, 255L, 256L, LONG_MAX}) {
        const QNumber small(n);
        const QNumber big = in_big_form(small);
        ASSERT_TRUE(big.is_big());
        const Term* first = mgr.make_bv_number(small_first ? small : big, w);
        EXPECT_EQ(mgr.make_bv_number(small_first ? big : small, w), first) << n << " at " << w;
      }
    }
  }
}

TEST(Numerals, OfRandomNumbersAreInRangeAndOne)
{
  Random random;
  SCOPED_TRACE(random);
  TermManager mgr;
  mpz_t n;
  mpz_t one;
  mpz_t expected;
  mpz_inits(n, one, expected, nullptr);
  mpz_set_ui(one, 1);
  for (int i = 0; i < 2000; ++i) {
    const unsigned long w = 1 + random.index(200);
    random.integer(n, 300);
    mpz_fdiv_r_2exp(expected, n, w);
    const Term* t = mgr.make_bv_number(QNumber(n, one), w);
    EXPECT_EQ(value_of(mgr, t), QNumber(expected, one)) << w;
    EXPECT_EQ(mgr.make_bv_number(value_of(mgr, t), w), t) << w;
    EXPECT_EQ(t->get_symbol()->get_output_type(), mgr.make_bv_type(w));
  }
  mpz_clears(n, one, expected, nullptr);
}

TEST(Numerals, KeepTheWholeValueOfEveryIntegerType)
{
  static_assert(MakesNumeral<int> && MakesNumeral<long> && MakesNumeral<bool> && MakesNumeral<QNumber>);
  static_assert(!MakesNumeral<double> && !MakesNumeral<float>);
  TermManager mgr;
  EXPECT_EQ(mgr.make_bv_number(1L << 40, 64)->get_symbol()->get_name(), "#x0000010000000000");
  EXPECT_EQ(mgr.make_bv_number(~0UL, 64)->get_symbol()->get_name(), "#xffffffffffffffff");
  EXPECT_EQ(mgr.make_bv_number(~0UL, 68)->get_symbol()->get_name(), "#x0ffffffffffffffff");
  EXPECT_EQ(mgr.make_bv_number(~0U, 64)->get_symbol()->get_name(), "#x00000000ffffffff");
  EXPECT_EQ(mgr.make_bv_number(true, 4)->get_symbol()->get_name(), "#x1");
}

TEST(Numerals, RefuseRationals)
{
  TermManager mgr;
  const auto request = [&mgr](const QNumber& n) { return [&mgr, n] { mgr.make_bv_number(n, 8); }; };
  const std::string rest = " was requested, but an integer was expected";
  expect_refusal(mgr, request(QNumber(1, 2)), "a bit-vector numeral of value 1/2" + rest);
  expect_refusal(mgr, request(QNumber(-22, 7)), "a bit-vector numeral of value -22/7" + rest);
  expect_refusal(mgr, request(in_big_form(QNumber(1, 2))), "a bit-vector numeral of value 1/2" + rest);
  EXPECT_TRUE(mgr.get_numerals().empty());
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(5, 8)), QNumber(5));
}

TEST(Numerals, RefuseImpossibleWidths)
{
  TermManager mgr;
  expect_refusal(
      mgr, [&mgr] { mgr.make_bv_number(1, 0); },
      "a bit-vector sort of width 0 was requested, but widths are 1 to 4294967295");
  expect_refusal(
      mgr, [&mgr] { mgr.make_bv_number(QNumber(1), 4294967296); },
      "a bit-vector sort of width 4294967296 was requested, but widths are 1 to 4294967295");
  EXPECT_TRUE(mgr.get_numerals().empty());
  EXPECT_EQ(value_of(mgr, mgr.make_bv_number(1, 1)), QNumber(1));
}

// -----------------------------------------------------------------------------------------------------------
// names

TEST(NumeralNames, AreHexadecimalForMultiplesOfFourElseBinary)
{
  struct Row
  {
    QNumber value;
    unsigned long width;
    std::string name;
  };
  const QNumber all_ones = BVNumber::pow2(64) - QNumber(1);
  const std::vector<Row> rows = {
      {0, 1, "#b0"},
      {1, 1, "#b1"},
      {0, 3, "#b000"},
      {5, 3, "#b101"},
      {1, 5, "#b00001"},
      {0, 4, "#x0"},
      {15, 4, "#xf"},
      {0, 8, "#x00"},
      {10, 8, "#x0a"},
      {255, 8, "#xff"},
      {1, 62, "#b" + std::string(61, '0') + "1"},
      {LONG_MAX, 63, "#b" + std::string(63, '1')},
      {0xabcdef0123456789 >> 4, 64, "#x0abcdef012345678"},
      {all_ones, 64, "#xffffffffffffffff"},
      {all_ones, 65, "#b0" + std::string(64, '1')},
      {all_ones, 68, "#x0ffffffffffffffff"},
      {BVNumber::pow2(64), 68, "#x10000000000000000"},
  };
  TermManager mgr;
  for (const Row& row : rows) {
    const Symbol* s = mgr.make_bv_number(row.value, row.width)->get_symbol();
    EXPECT_EQ(s->get_name(), row.name);
    EXPECT_EQ(s->get_name(), row.name) << "asked again";
  }
}

TEST(NumeralNames, MayBeAskedForLate)
{
  TermManager mgr;
  std::vector<const Term*> terms(1000);
  for (std::size_t i = 0; i < terms.size(); ++i)
    terms[i] = mgr.make_bv_number(static_cast<int>(i), 12);
  EXPECT_EQ(terms[0]->get_symbol()->get_name(), "#x000");
  EXPECT_EQ(terms[999]->get_symbol()->get_name(), "#x3e7");
  EXPECT_EQ(terms[500]->get_symbol()->get_name(), "#x1f4");
}

TEST(NumeralNames, OfAMillionBitsHaveAllDigits)
{
  TermManager mgr;
  constexpr unsigned long width = 1000000;
  const Term* t = mgr.make_bv_number(BVNumber::pow2(width - 1) + QNumber(1), width);
  EXPECT_TRUE(t->get_symbol()->get_name() == "#x8" + std::string(width / 4 - 2, '0') + "1");
  const Term* ones = mgr.make_bv_number(-1, width);
  EXPECT_TRUE(ones->get_symbol()->get_name() == "#x" + std::string(width / 4, 'f'));
  EXPECT_TRUE(value_of(mgr, ones) == BVNumber::pow2(width) - QNumber(1));
  const Term* odd = mgr.make_bv_number(-1, width + 1);
  EXPECT_TRUE(odd->get_symbol()->get_name() == "#b" + std::string(width + 1, '1'));
  const Term* zero = mgr.make_bv_number(BVNumber::pow2(width), width);
  EXPECT_TRUE(zero->get_symbol()->get_name() == "#x" + std::string(width / 4, '0'));
  EXPECT_TRUE(zero == mgr.make_bv_number(0, width));
}

}  // namespace lumo::test
