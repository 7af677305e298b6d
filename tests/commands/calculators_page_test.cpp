// The page on the calculators has a row and an example for each operator: an assertion of
// examples/calculators.smt2 and the definitions that answer it. This test finds missing ones;
// scripts/check_docs.py checks whether they are correct.

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/commands/text_file.h"
#include "lumo/smtlib/script_reader.h"

namespace lumo::commands {
namespace {

const std::string kExample = LUMO_SOURCE_DIR "/examples/calculators.smt2";
const std::string kPage = LUMO_SOURCE_DIR "/docs/calculators.md";

std::string read_file(const std::string& name) { return std::string(InputText::read_file(name).get()); }

/// The lines of a text that start with the given characters, in their order.
std::vector<std::string> select_lines(const std::string& text, const std::string& start)
{
  std::vector<std::string> selected;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with(start)) selected.push_back(line);
  }
  return selected;
}

TEST(CalculatorsPage, ShowsEachAssertionOfTheExampleInItsOrder)
{
  EXPECT_EQ(select_lines(read_file(kPage), "(assert "), select_lines(read_file(kExample), "(assert "));
}

TEST(CalculatorsPage, HasARowForEachOperator)
{
  const std::string page = read_file(kPage);
  for (const OperatorInfo& info : kOperators) {
    const std::string start = "| `" + std::string(info.smtlib_name) + "`";
    EXPECT_FALSE(select_lines(page, start).empty()) << info.smtlib_name;
  }
  EXPECT_EQ(select_lines(page, "| `").size(), kNumOperators);
}

TEST(CalculatorsPage, ExampleHasARequestForEveryCalculatorThatSolvesSomething)
{
  TermManager mgr;
  std::set<Kind> kinds;
  for (const smtlib::Assertion& assertion : smtlib::read_script(mgr, read_file(kExample)).assertions) {
    std::vector<const Term*> stack{assertion.term};
    while (!stack.empty()) {
      const Term* t = stack.back();
      stack.pop_back();
      if (t->get_num_args() != 0) kinds.insert(t->get_symbol()->get_kind());
      for (std::size_t i = 0; i < t->get_num_args(); ++i)
        stack.push_back(t->get_arg(i));
    }
  }
  EXPECT_EQ(kinds.size(), kNumOperators - 2) << "all but the remainders";
}

}  // namespace
}  // namespace lumo::commands
