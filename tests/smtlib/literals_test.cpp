#include "lumo/smtlib/literals.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::smtlib {
namespace {

TEST(Literals, AreReadInEachBase)
{
  struct Literal
  {
    std::string_view digits;
    int base;
    unsigned long width;
    std::string_view text;
  };
  const std::vector<Literal> rows = {
      {"0", 2, 1, "#b0"},
      {"101", 2, 3, "#b101"},
      {"00fF", 16, 16, "#x00ff"},
      {"ffffffffffffffffffff", 16, 80, "#xffffffffffffffffffff"},
      {"18446744073709551616", 10, 68, "#x10000000000000000"},
      {"300", 10, 8, "#x2c"},
      {"000", 10, 4, "#x0"},
  };
  TermManager mgr;
  for (const Literal& row : rows)
    EXPECT_EQ(make_numeral(mgr, row.digits, row.base, row.width)->get_symbol()->get_name(), row.text);
}

TEST(Literals, OfTokensHaveTheWidthOfTheirDigits)
{
  TermManager mgr;
  EXPECT_EQ(make_literal(mgr, {TokenKind::kHexadecimal, "0fF", 0}), mgr.make_bv_number(255, 12));
  EXPECT_EQ(make_literal(mgr, {TokenKind::kBinary, "0101", 0}), mgr.make_bv_number(5, 4));
}

TEST(Literals, InDecimalMustHaveAPlaceInTheirWidth)
{
  TermManager mgr;
  EXPECT_EQ(make_decimal_literal(mgr, "bv255", 8), mgr.make_bv_number(255, 8));
  EXPECT_EQ(make_decimal_literal(mgr, "bv000000000000000000000000255", 8), mgr.make_bv_number(255, 8));
  EXPECT_EQ(make_decimal_literal(mgr, "bv256", 8), nullptr);
  EXPECT_EQ(make_decimal_literal(mgr, "bv18446744073709551616", 64), nullptr);
  EXPECT_EQ(make_decimal_literal(mgr, "bv18446744073709551615", 64), mgr.make_bv_number(-1, 64));
}

TEST(Literals, InDecimalAreNamedBvAndDigits)
{
  for (const std::string_view name : {"bv0", "bv12345678901234567890"})
    EXPECT_TRUE(is_decimal_literal_name(name)) << name;
  for (const std::string_view name : {"bv", "bvadd", "bv1a", "BV1", "b1", ""})
    EXPECT_FALSE(is_decimal_literal_name(name)) << name;
}

}  // namespace
}  // namespace lumo::smtlib
