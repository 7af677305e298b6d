// The helpers that the calculators share: pushing, the selection of the free operand, bounds, the modular inverse.

#include "lumo/calculators/helpers.h"

#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/gmp_number.h"
#include "tests/support/notation.h"
#include "tests/support/random.h"

namespace lumo::adhoccalculator {
namespace {

using test::parse_term;

std::vector<std::string> collected_texts;

void collect(const Exception& e) { collected_texts.emplace_back(e.what()); }

class FindFreeConstantTest : public testing::Test
{
 protected:
  FindFreeConstantTest() : before_(Exception::set_observer(collect)) { collected_texts.clear(); }
  ~FindFreeConstantTest() override { Exception::set_observer(before_); }

  TermManager mgr_;
  Exception::Observer before_;
};

TEST(PushDefinition, PushesTheTermTheValueAndASetFlag)
{
  TermManager mgr;
  const Term* x = parse_term(mgr, "x8");
  const Term* n = parse_term(mgr, "#x05");
  ModelStore::DefinitionStack defs;
  push_definition(defs, x, n);
  ASSERT_EQ(defs.size(), 1U);
  EXPECT_EQ(defs.top().term, x);
  EXPECT_EQ(defs.top().value, n);
  EXPECT_TRUE(defs.top().flag);
}

TEST_F(FindFreeConstantTest, LeavesAConstantInFirstPlaceWhateverTheOtherOperandIs)
{
  const Term* x = parse_term(mgr_, "x8");
  for (const char* other : {"y8", "(bvadd u8 v8)", "#x05", "true"}) {
    const Term* a = x;
    const Term* b = parse_term(mgr_, other);
    EXPECT_FALSE(find_free_constant(&mgr_, a, b)) << other;
    EXPECT_EQ(a, x);
    EXPECT_EQ(b, parse_term(mgr_, other));
  }
  EXPECT_TRUE(collected_texts.empty());
}

TEST_F(FindFreeConstantTest, ExchangesTheOperandsIfOnlyTheSecondIsAConstant)
{
  const Term* a = parse_term(mgr_, "(bvadd u8 v8)");
  const Term* b = parse_term(mgr_, "y8");
  EXPECT_TRUE(find_free_constant(&mgr_, a, b));
  EXPECT_EQ(a, parse_term(mgr_, "y8"));
  EXPECT_EQ(b, parse_term(mgr_, "(bvadd u8 v8)"));
}

TEST_F(FindFreeConstantTest,
       WithoutAConstantThrowsAPlainExceptionThatNamesTheSecondOperandAndKeepsTheExchange)
{
  const Term* a = parse_term(mgr_, "(bvadd x8 y8)");
  const Term* b = parse_term(mgr_, "(bvmul u8 v8)");
  try {
    find_free_constant(&mgr_, a, b);
    FAIL() << "expected an exception";
  } catch (const AdHocCalculator::error&) {
    FAIL() << "a handler for AdHocCalculator::error must not see it";
  } catch (const Exception& e) {
    EXPECT_EQ(typeid(e), typeid(Exception));
    EXPECT_STREQ(e.what(), "expected constant, but bvmul found instead");
  }
  EXPECT_EQ(a, parse_term(mgr_, "(bvmul u8 v8)"));
  EXPECT_EQ(b, parse_term(mgr_, "(bvadd x8 y8)"));
  const std::vector<std::string> expected = {"expected constant, but ",
                                             "expected constant, but bvmul found instead"};
  EXPECT_EQ(collected_texts, expected) << "the hook runs for the error and for the copy that is thrown";
}

TEST_F(FindFreeConstantTest, NamesASymbolWithIndicesInFull)
{
  const Term* a = parse_term(mgr_, "(bvnot x8)");
  const Term* b = parse_term(mgr_, "((_ rotate_left 3) y8)");
  try {
    find_free_constant(&mgr_, a, b);
    FAIL() << "expected an exception";
  } catch (const std::exception& e) {
    EXPECT_STREQ(e.what(), "expected constant, but (_ rotate_left 3) found instead");
  }
}

TEST(Bounds, PlusOneAndMinusOneMoveOutOfTheWordAndBelowZero)
{
  EXPECT_EQ(plus_one(QNumber(5)), QNumber(6));
  EXPECT_EQ(minus_one(QNumber(5)), QNumber(4));
  EXPECT_EQ(minus_one(QNumber(0)), QNumber(-1));
  EXPECT_FALSE(minus_one(QNumber(0)).is_big());

  const QNumber largest_word(LONG_MAX);
  const QNumber above = plus_one(largest_word);
  EXPECT_TRUE(above.is_big());
  EXPECT_EQ(above, BVNumber::pow2(63));
  EXPECT_FALSE(largest_word.is_big()) << "the argument is not changed";

  const QNumber largest_pattern = minus_one(BVNumber::pow2(64));
  EXPECT_TRUE(largest_pattern.is_big());
  EXPECT_EQ(largest_pattern.to_string(), "18446744073709551615");
  EXPECT_TRUE(plus_one(minus_one(above)).is_big()) << "a big number stays big";
}

TEST(ModularInverse, EdgeCases)
{
  EXPECT_EQ(calculate_modular_inverse(QNumber(3), QNumber(256)), QNumber(171));
  EXPECT_EQ(calculate_modular_inverse(QNumber(1), QNumber(2)), QNumber(1));
  EXPECT_EQ(calculate_modular_inverse(QNumber(1), BVNumber::pow2(100)), QNumber(1));
  EXPECT_EQ(calculate_modular_inverse(QNumber(0), QNumber(256)), QNumber(0));
  EXPECT_EQ(calculate_modular_inverse(QNumber(6), QNumber(16)), QNumber(3))
      << "no inverse, but the gcd's coefficient";
  EXPECT_EQ(calculate_modular_inverse(QNumber(3), QNumber(10)), QNumber(7)) << "no power of two";
  EXPECT_EQ(calculate_modular_inverse(QNumber(3), QNumber(1)), QNumber(0));
}

TEST(ModularInverse, OfEveryOddNumberUpToWidthTenIsTheOnlyFactorThatGivesOne)
{
  for (unsigned long w = 1; w <= 10; ++w) {
    const long m = 1L << w;
    for (long a = 1; a < m; a += 2) {
      long inverse = 1;
      while (a * inverse % m != 1 % m)
        inverse += 2;
      ASSERT_EQ(calculate_modular_inverse(QNumber(a), QNumber(m)), QNumber(inverse))
          << a << " modulo 2^" << w;
    }
  }
}

TEST(ModularInverse, OfEveryOddNumberUpToWidthTwelveIsTheSameByBothWays)
{
  for (unsigned long w = 1; w <= 12; ++w) {
    const QNumber m(1L << w);
    for (long a = 1; a < 1L << w; a += 2)
      ASSERT_EQ(calculate_modular_inverse(a, m), calculate_inverse_by_euclid(a, m)) << a << " modulo 2^" << w;
  }
}

TEST(ModularInverse, OfRandomOddNumbersIsTheSameByBothWaysAndByGmp)
{
  test::Random random;
  SCOPED_TRACE(random);
  for (int i = 0; i < 100'000; ++i) {
    const std::size_t w = 1 + random.index(std::size_t{1} << random.index(13));  // 4096 at most
    const test::Integer modulus = test::Integer::power(w);
    test::Integer a;
    random.natural(a, w);
    mpz_setbit(a, 0);
    test::Integer expected;
    mpz_invert(expected, a, modulus);
    const QNumber m = BVNumber::pow2(w);
    const QNumber x = calculate_modular_inverse(BVNumber::from_integer(a), m);
    ASSERT_EQ(x, BVNumber::from_integer(expected)) << a << " modulo 2^" << w;
    ASSERT_EQ(x, calculate_inverse_by_euclid(BVNumber::from_integer(a), m)) << a << " modulo 2^" << w;
  }
}

TEST(ModularInverse, OfLargeNumbersLiesInRangeAndGivesTheGcd)
{
  for (const unsigned long w : {62UL, 63UL, 64UL, 65UL, 128UL, 1000UL, 4096UL}) {
    const QNumber m = BVNumber::pow2(w);
    for (const long low : {1L, 2L, 3L, 255L, 256L}) {
      const QNumber a = m - QNumber(low);
      const QNumber x = calculate_modular_inverse(a, m);
      EXPECT_TRUE(x >= QNumber(0) && x < m);
      const QNumber gcd(low % 2 != 0 ? 1 : low == 2 ? 2 : 256);
      EXPECT_EQ(BVNumber::reduce(a * x, w), gcd) << "2^" << w << " - " << low;
    }
  }
}

}  // namespace
}  // namespace lumo::adhoccalculator
