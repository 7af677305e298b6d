// Values of bit-vectors as words and digits; GMP and printf-like loops over bits are the judges.

#include "lumo/terms/numeral_values.h"

#include <string>
#include <vector>

#include <gmp.h>
#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "tests/support/random.h"
#include "tests/support/refusal.h"

namespace lumo::test {
namespace {

using Limbs = std::vector<std::uint64_t>;

struct Spelling
{
  unsigned long width;
  Limbs words;
  const char* binary;
  const char* decimal;
  const char* hexadecimal;
};

const Spelling kSpellings[] = {
    {1, {0}, "0", "0", "0"},
    {1, {1}, "1", "1", "1"},
    {4, {10}, "1010", "10", "a"},
    {5, {10}, "01010", "10", "0a"},
    {8, {255}, "11111111", "255", "ff"},
    {63,
     {0x7fffffffffffffff},
     "111111111111111111111111111111111111111111111111111111111111111",
     "9223372036854775807",
     "7fffffffffffffff"},
    {64,
     {0xffffffffffffffff},
     "1111111111111111111111111111111111111111111111111111111111111111",
     "18446744073709551615",
     "ffffffffffffffff"},
    {65,
     {0, 1},
     "10000000000000000000000000000000000000000000000000000000000000000",
     "18446744073709551616",
     "10000000000000000"},
    {70,
     {5, 0},
     "0000000000000000000000000000000000000000000000000000000000000000000101",
     "5",
     "000000000000000005"},
    {128,
     {0x0123456789abcdef, 0xfedcba9876543210},
     "1111111011011100101110101001100001110110010101000011001000010000000000010010001101000101011001111000100"
     "1"
     "101010111100110111101111",
     "338770000845734292516042252062085074415",
     "fedcba98765432100123456789abcdef"},
};

TEST(NumeralValues, GoOutAndInAsTheTableSays)
{
  TermManager mgr;
  for (const Spelling& row : kSpellings) {
    const Term* numeral = make_numeral(mgr, row.words, row.width);
    EXPECT_EQ(get_words(numeral), row.words) << row.decimal;
    EXPECT_EQ(get_digits(numeral, Base::kBinary), row.binary);
    EXPECT_EQ(get_digits(numeral, Base::kDecimal), row.decimal);
    EXPECT_EQ(get_digits(numeral, Base::kHexadecimal), row.hexadecimal);
    EXPECT_EQ(make_numeral(mgr, row.binary, Base::kBinary, row.width), numeral);
    EXPECT_EQ(make_numeral(mgr, row.decimal, Base::kDecimal, row.width), numeral);
    EXPECT_EQ(make_numeral(mgr, row.hexadecimal, Base::kHexadecimal, row.width), numeral);

    std::uint64_t word = 77;
    const bool fits = row.words.size() == 1 || row.words[1] == 0;
    EXPECT_EQ(get_word(numeral, word), fits);
    EXPECT_EQ(word, fits ? row.words[0] : 77U);
  }
}

TEST(NumeralValues, AreTakenModuloTheWidth)
{
  TermManager mgr;
  EXPECT_EQ(make_numeral(mgr, Limbs{0x1234, 9}, 8), mgr.make_bv_number(0x34, 8));
  EXPECT_EQ(make_numeral(mgr, Limbs{}, 8), mgr.make_bv_number(0, 8));
  EXPECT_EQ(make_numeral(mgr, "256", Base::kDecimal, 8), mgr.make_bv_number(0, 8));
  EXPECT_EQ(make_numeral(mgr, "FfFf", Base::kHexadecimal, 8), mgr.make_bv_number(255, 8));
  EXPECT_EQ(make_numeral(mgr, "0000000000000000001", Base::kBinary, 3), mgr.make_bv_number(1, 3));
}

TEST(NumeralValues, AgreeWithGmpAtRandomWidths)
{
  Random random;
  SCOPED_TRACE(random);
  for (int round = 0; round < 300; ++round) {
    const unsigned long w = 1 + random.index(700);
    Limbs words((w + 63) / 64);
    for (std::uint64_t& word : words)
      word = random.bits();
    if (w % 64 != 0) words.back() &= (std::uint64_t{1} << (w % 64)) - 1;
    const QNumber number = make_number(words);
    ASSERT_EQ(make_words(number, w), words);
    mpz_t value;
    mpz_init(value);
    for (const Base base : {Base::kBinary, Base::kDecimal, Base::kHexadecimal}) {
      const std::string digits = make_digits(number, base, w);
      ASSERT_EQ(mpz_set_str(value, digits.c_str(), static_cast<int>(base)), 0);
      for (unsigned long i = 0; i < w; ++i)
        ASSERT_EQ(mpz_tstbit(value, i), (words[i / 64] >> (i % 64)) & 1U) << digits << ", bit " << i;
      ASSERT_EQ(make_number(digits, base), number) << digits;
    }
    mpz_clear(value);
  }
}

TEST(NumeralValues, RefuseWhatIsNotANumeralOrADigit)
{
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
  const auto refuse = [](std::string_view digits, Base base) {
    return get_refusal([=] { (void)make_number(digits, base); });
  };
  EXPECT_EQ(refuse("012", Base::kBinary),
            "a binary number has the character 2 at place 3, but a digit was expected");
  EXPECT_EQ(refuse("-1", Base::kDecimal),
            "a decimal number has the character - at place 1, but a digit was expected");
  EXPECT_EQ(refuse("1 2", Base::kDecimal),
            "a decimal number has the character   at place 2, but a digit was expected");
  EXPECT_EQ(refuse("0xff", Base::kHexadecimal),
            "a hexadecimal number has the character x at place 2, but a digit was expected");
  EXPECT_EQ(refuse("", Base::kDecimal), "a decimal number has no digit");
  EXPECT_EQ(get_refusal([&] { (void)get_words(x); }),
            "a term with the symbol x was given, but a numeral was expected");
  EXPECT_EQ(get_refusal([&] { (void)get_digits(mgr.make_true(), Base::kDecimal); }),
            "a term with the symbol true was given, but a numeral was expected");
  std::uint64_t word = 0;
  EXPECT_EQ(get_refusal([&] { get_word(nullptr, word); }),
            "a null pointer was given, but a numeral was expected");
}

}  // namespace
}  // namespace lumo::test
