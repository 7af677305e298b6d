// The page on elimination shows the tables of the library; this test compares the two.

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/order_atom.h"
#include "lumo/elimination/rules.h"
#include "lumo/numbers/bvnumber.h"
#include "tests/support/text_file.h"

namespace lumo {
namespace {

const std::string kPage = LUMO_SOURCE_DIR "/docs/elimination.md";

/// The rows of the table under a heading
std::vector<std::string> read_table(const std::string& heading)
{
  std::istringstream in(lumo::test::read_text_file(kPage));
  std::vector<std::string> rows;
  bool is_inside = false;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("## ")) is_inside = line == "## " + heading;
    if (is_inside && line.starts_with("| `")) rows.push_back(line);
  }
  return rows;
}

std::string describe(FreeNeed need)
{
  switch (need) {
    case FreeNeed::kNever:
      return "never";
    case FreeNeed::kOne:
      return "one argument";
    case FreeNeed::kAll:
      return "all arguments";
    case FreeNeed::kAllChain:
      return "all arguments; in nested applications, any two";
    case FreeNeed::kTwo:
      return "two arguments";
    case FreeNeed::kGuarded:
      return "one argument, with a guard; all without one";
  }
  return {};
}

std::string describe(NumeralRewrite rewrite)
{
  switch (rewrite) {
    case NumeralRewrite::kNone:
      return "|";
    case NumeralRewrite::kShift:
      return "shift |";
    case NumeralRewrite::kFactor:
      return "factor |";
  }
  return {};
}

std::string describe(Kind kind)
{
  const std::string name = "`" + std::string(get_operator_info(kind).smtlib_name) + "`";
  if (kind == Kind::kIff) return name + " on Booleans";
  return kind == Kind::kEq ? name + " on bit-vectors" : name;
}

TEST(EliminationPage, PrintsTheTableOfRules)
{
  std::vector<std::string> rows;
  rows.reserve(kEliminationRules.size());
  for (const EliminationRule& rule : kEliminationRules)
    rows.push_back("| " + describe(rule.kind) + " | " + describe(rule.need) + " | " + describe(rule.rewrite));
  EXPECT_EQ(read_table("Rules"), rows);
}

std::string describe_bound(const QNumber& bound, unsigned long w)
{
  if (bound == QNumber(0)) return "0";
  if (bound == BVNumber::pow2(w) - QNumber(1)) return "2^w - 1";
  return bound == BVNumber::pow2(w - 1) ? "2^(w-1)" : "2^(w-1) - 1";
}

TEST(EliminationPage, PrintsTheGuards)
{
  constexpr unsigned long kWidth = 70;
  std::vector<std::string> rows;
  for (const Kind kind : {Kind::kBvUlt, Kind::kBvUle, Kind::kBvSlt, Kind::kBvSle}) {
    for (const bool is_left_free : {true, false}) {
      const OrderLimit limit = get_order_limit(kind, is_left_free, kWidth);
      rows.push_back("| `(" + std::string(get_operator_info(kind).smtlib_name) +
                     (is_left_free ? " x e)` | f " : " e x)` | f ") +
                     (limit.truth ? "or e = " : "and not e = ") + describe_bound(limit.bound, kWidth) + " |");
    }
  }
  EXPECT_EQ(read_table("Guards"), rows);
}

}  // namespace
}  // namespace lumo
