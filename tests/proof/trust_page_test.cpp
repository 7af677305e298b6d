// The page on trust shows the table of proofs; this test compares the two.

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/elimination/rule_rows.h"
#include "tests/proof/proof_rows.h"
#include "tests/support/text_file.h"

namespace lumo::test {
namespace {

const std::string kPage = LUMO_SOURCE_DIR "/docs/trust.md";

/// The rows of the tables under a heading, a line each
std::string read_table(const std::string& heading)
{
  std::istringstream in(read_text_file(kPage));
  std::string rows;
  bool is_inside = false;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("## ")) is_inside = line == "## " + heading;
    if (is_inside && line.starts_with("| `")) rows += line + "\n";
  }
  return rows;
}

std::string make_line(const std::vector<std::string>& cells)
{
  std::string line = "|";
  for (const std::string& cell : cells)
    line += (cell.empty() ? "" : " ") + cell + " |";
  return line + "\n";
}

std::string describe(Kind kind)
{
  const std::string name = "`" + std::string(get_operator_info(kind).smtlib_name) + "`";
  if (kind == Kind::kIff) return name + " on Booleans";
  return kind == Kind::kEq ? name + " on bit-vectors" : name;
}

std::string quote(std::string_view text) { return text.empty() ? "" : "`" + std::string(text) + "`"; }

/// The sorts of the operands
std::string describe_place(const ProofRow& row)
{
  const SortRule rule = get_operator_info(row.kind).rule;
  const bool is_extension = rule == SortRule::kExtend;
  switch (row.scope) {
    case Scope::kEvery:
      return rule == SortRule::kBool ? "Bool" : "all widths";
    case Scope::kOneBit:
      return is_extension ? "width 1, by a bit or more" : "width 1";
    case Scope::kWider:
      return is_extension ? "other widths, or by no bit" : "other widths";
    case Scope::kBools:
      return "Bool";
    case Scope::kVectors:
      return "all widths";
  }
  return {};
}

std::string describe(const ProofRow& row)
{
  return make_line({describe(row.kind), describe_place(row), std::string(row.shapes), quote(row.value),
                    quote(row.condition), row.definitions.empty() ? "what it builds" : quote(row.definitions),
                    row.standing == Standing::kSound ? "proven" : "refuted"});
}

TEST(TrustPage, PrintsTheTableOfProofs)
{
  std::string rows;
  for (const ProofRow& row : get_proof_rows())
    rows += describe(row);
  EXPECT_EQ(read_table("Cases"), rows);
}

TEST(TrustPage, NamesTheWidths)
{
  std::set<std::string> widths;
  for (const ProofRow& row : get_proof_rows()) {
    if (describe_place(row) == "all widths") widths.insert(describe_proof_widths(row));
  }
  ASSERT_EQ(widths.size(), 1U);
  EXPECT_NE(read_text_file(kPage).find("*all widths* are " + *widths.begin() + "."), std::string::npos)
      << *widths.begin();
}

// -----------------------------------------------------------------------------------------------------------
// Rules of elimination

std::string describe_limit(unsigned long max_width)
{
  return max_width == 0 ? "" : "up to " + std::to_string(max_width);
}

std::string describe_widths(const RuleRow& row)
{
  switch (row.family) {
    case RuleFamily::kBools:
      return "Bool";
    case RuleFamily::kOneBit:
      return "width 1";
    case RuleFamily::kWider:
      return "other widths";
    case RuleFamily::kWidths:
    case RuleFamily::kRotations:
    case RuleFamily::kExtractions:
    case RuleFamily::kParts:
    case RuleFamily::kShifts:
    case RuleFamily::kFactors:
    case RuleFamily::kNoShifts:
    case RuleFamily::kFarShifts:
    case RuleFamily::kSignShifts:
      break;
  }
  if (row.max_width_of_z3 == 0 && row.max_width_of_cvc5 == 0) return "all widths";
  const std::string z3 = row.max_width_of_z3 == 0 ? "all widths" : describe_limit(row.max_width_of_z3);
  return "Z3: " + z3 + "; cvc5: " + describe_limit(row.max_width_of_cvc5);
}

TEST(TrustPage, PrintsTheTableOfRules)
{
  std::string rows;
  for (const RuleRow& row : get_rule_rows()) {
    rows += make_line({quote(row.old_form), quote(row.condition), quote(row.steps), quote(row.new_form),
                       quote(row.values), describe_widths(row)});
  }
  EXPECT_EQ(read_table("Elimination"), rows);
}

/// The number of an operator's rows with a standing
std::size_t count_rows(Kind kind, Standing standing)
{
  std::size_t num_rows = 0;
  for (const ProofRow& row : get_proof_rows())
    num_rows += row.kind == kind && row.standing == standing ? 1 : 0;
  return num_rows;
}

std::string describe_number(std::size_t n)
{
  if (n == 0) return "nothing";
  return std::to_string(n) + (n == 1 ? " case" : " cases");
}

/// The first cells of each operator's row; the others are prose.
TEST(TrustPage, CountsTheProofsOfEachOperator)
{
  std::istringstream rows(read_table("Operators"));
  for (const OperatorInfo& info : kOperators) {
    std::string row;
    std::getline(rows, row);
    const std::string start = describe(info.kind);
    const std::string expected =
        "| " + start + " | " + describe_number(count_rows(info.kind, Standing::kSound)) + " |";
    EXPECT_EQ(row.substr(0, expected.size()), expected);
    const std::size_t num_unsound = count_rows(info.kind, Standing::kUnsound);
    const std::string unsound = describe_number(num_unsound) + (num_unsound == 0 ? " |" : ": ");
    EXPECT_NE(row.rfind("| " + unsound), std::string::npos) << row;
  }
  std::string rest;
  EXPECT_FALSE(std::getline(rows, rest)) << rest;
}

}  // namespace
}  // namespace lumo::test
