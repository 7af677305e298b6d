// Calculators that are called with an application of another operator: the widths and positions that they read from
// its symbol are then 0, and exceptions of the term layer pass through.

#include <gtest/gtest.h>

#include "lumo/calculators/calculator_table.h"
#include "tests/calculators/calls.h"
#include "tests/support/notation.h"

namespace lumo::test {
namespace {

struct OtherOperatorCase
{
  const char* own;    ///< an application of the calculator's operator
  const char* other;  ///< the application that it is called with
  const char* value;
  const char* message;
};

constexpr const char* kNoSort = "a bit-vector sort of width 0 was requested, but widths are 1 to 4294967295";
constexpr const char* kNoExtract =
    "extract was requested for an operand of width 0, but widths are 1 to 4294967295";
constexpr const char* kNoRotateLeft =
    "rotate_left was requested for an operand of width 0, but widths are 1 to 4294967295";
constexpr const char* kNoRotateRight =
    "rotate_right was requested for an operand of width 0, but widths are 1 to 4294967295";

constexpr OtherOperatorCase kOtherOperatorCases[] = {
    {"(concat x4 y4)", "(bvsub x8 y8)", "#x05", kNoExtract},
    {"((_ rotate_left 3) x8)", "(bvneg x8)", "#x05", kNoRotateRight},
    {"((_ rotate_left 3) x8)", "(bvneg x1)", "#b1", kNoRotateRight},
    {"((_ rotate_right 3) x8)", "(bvneg x8)", "#x05", kNoRotateLeft},
    {"((_ rotate_right 3) x8)", "(bvneg x1)", "#b1", kNoRotateLeft},
    {"(bvult x8 y8)", "(bvsub x8 y8)", "true", kNoSort},
    {"(bvult x8 y8)", "(bvsub x8 #x05)", "true", kNoSort},
    {"(bvult x8 y8)", "(bvsub #x05 x8)", "false", kNoSort},
    {"(bvult x8 y8)", "(bvule x8 y8)", "true", kNoSort},
    {"(bvule x8 y8)", "(bvsub x8 y8)", "true", kNoSort},
    {"(bvule x8 y8)", "(bvsub x8 #x05)", "true", kNoSort},
    {"(bvule x8 y8)", "(bvult #x05 x8)", "false", kNoSort},
    {"(bvslt x8 y8)", "(bvsub x8 y8)", "true", kNoSort},
    {"(bvslt x8 y8)", "(bvsub x8 #x05)", "true", kNoSort},
    {"(bvslt x8 y8)", "(bvsle #x05 x8)", "false", kNoSort},
    {"(bvsle x8 y8)", "(bvsub x8 y8)", "true", kNoSort},
    {"(bvsle x8 y8)", "(bvsub x8 #x05)", "true", kNoSort},
    {"(bvsle x8 y8)", "(bvslt #x05 x8)", "false", kNoSort},
    {"(bvadd x8 y8)", "(and p q)", "#b1", kNoSort},
    {"(bvxor x8 y8)", "(bvult x8 y8)", "true", kNoSort},
    {"(bvshl x8 y8)", "(bvult x8 y8)", "true", kNoSort},
    {"(= x8 y8)", "(and p q)", "true", kNoSort},
};

void call_as(TermManager& mgr, const char* own, const char* other, const char* value,
             ModelStore::DefinitionStack& defs)
{
  const Symbol* s = parse_term(mgr, own)->get_symbol();
  (*find_calculator(mgr, s))(&mgr, parse_term(mgr, other), parse_term(mgr, value), defs);
}

TEST(OtherOperator, HasNoWidth)
{
  for (const OtherOperatorCase& c : kOtherOperatorCases) {
    TermManager mgr;
    ModelStore::DefinitionStack defs;
    SCOPED_TRACE(::testing::Message() << c.own << " on " << c.other);
    try {
      call_as(mgr, c.own, c.other, c.value, defs);
      ADD_FAILURE() << "expected the message: " << c.message;
    } catch (const Exception& e) {
      EXPECT_STREQ(e.what(), c.message);
    }
    EXPECT_TRUE(defs.empty());
  }
}

TEST(OtherOperator, IsAnExtractionOfTheLowestBitWithNothingAroundIt)
{
  TermManager mgr;
  ModelStore::DefinitionStack defs;
  call_as(mgr, "((_ extract 3 1) x8)", "(bvneg x8)", "#x05", defs);
  const std::vector<Definition> expected = {{parse_term(mgr, "x8"), parse_term(mgr, "#b1")}};
  EXPECT_EQ(take_definitions(defs), expected);
}

}  // namespace
}  // namespace lumo::test
