#include "lumo/smtlib/literals.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::smtlib {
namespace {

TEST(Literals, AreReadInEachBase)
{
  struct Row
  {
    std::string_view digits;
    int base;
    unsigned long width;
    std::string_view text;
  };
  const std::vector<Row> rows = {
      {"0", 2, 1, "#b0"},
      {"101", 2, 3, "#b101"},
      {"00fF", 16, 16, "#x00ff"},
      {"ffffffffffffffffffff", 16, 80, "#xffffffffffffffffffff"},
      {"18446744073709551616", 10, 68, "#x10000000000000000"},
      {"300", 10, 8, "#x2c"},
      {"000", 10, 4, "#x0"},
  };
  TermManager mgr;
  for (const Row& row : rows)
    EXPECT_EQ(make_numeral(mgr, row.digits, row.base, row.width)->get_symbol()->get_name(), row.text);
}

}  // namespace
}  // namespace lumo::smtlib
