// The page on the calculators shows an example for each operator: an assertion of examples/calculators.smt2 and the
// definitions that answer it. This holds the page, the example and the program together.

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "smtlib/reader.h"
#include "smtlib/run_invert.h"
#include "smtlib/text_file.h"

namespace lumo::smtlib {
namespace {

const std::string kExample = LUMO_SOURCE_DIR "/examples/calculators.smt2";
const std::string kRefusals = LUMO_SOURCE_DIR "/examples/refusals.smt2";
const std::string kPage = LUMO_SOURCE_DIR "/docs/calculators.md";

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

std::string invert_example()
{
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(run_invert({kExample}, in, out, err), kAllSolved) << err.str();
  return out.str();
}

TEST(CalculatorsPage, ShowsEachAssertionOfTheExampleInItsOrder)
{
  EXPECT_EQ(select_lines(read_file(kPage), "(assert "), select_lines(read_file(kExample), "(assert "));
}

TEST(CalculatorsPage, ShowsWhatTheProgramPrints)
{
  EXPECT_EQ(select_lines(read_file(kPage), "(define-fun "), select_lines(invert_example(), "(define-fun "));
}

/// The example's blocks: an assertion and what it gives, one after the other.
TEST(CalculatorsPage, ShowsTheDefinitionsBesideTheirAssertion)
{
  const std::string page = read_file(kPage);
  std::size_t num_blocks = 0;
  for (const std::string& assertion : select_lines(page, "(assert ")) {
    const std::size_t place = page.find(assertion);
    const std::size_t end = page.find("```", place);
    std::istringstream in(page.substr(page.find('\n', place) + 1, end - page.find('\n', place) - 1));
    for (std::string line; std::getline(in, line); ++num_blocks) {
      const std::string name = line.substr(12, line.find(' ', 12) - 12);
      EXPECT_NE(assertion.find(name), std::string::npos) << assertion << " does not mention " << name;
    }
  }
  EXPECT_EQ(num_blocks, select_lines(page, "(define-fun ").size());
}

/// What both pages show of the refusals, with the path as a reader in the repository's folder sees it
TEST(CalculatorsPage, AndTheGuideShowTheRefusalsThatTheProgramPrints)
{
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(run_invert({kRefusals}, in, out, err), kSomeRefused);
  std::vector<std::string> messages = select_lines(err.str(), "");
  for (std::string& message : messages)
    message.erase(0, std::string(LUMO_SOURCE_DIR "/").size());
  EXPECT_EQ(select_lines(read_file(LUMO_SOURCE_DIR "/docs/program.md"), "examples/refusals.smt2: "),
            messages);
  const std::vector<std::string> remainders(messages.end() - 2, messages.end());
  EXPECT_EQ(select_lines(read_file(kPage), "examples/refusals.smt2: "), remainders);
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
  for (const Assertion& assertion : read_script(mgr, read_file(kExample)).assertions) {
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
}  // namespace lumo::smtlib
