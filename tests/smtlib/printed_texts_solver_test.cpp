// The texts that lumo prints, read by the programs of other solvers.

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/script_printer.h"
#include "lumo/smtlib/trail_printer.h"
#include "tests/smtlib/random_trail.h"
#include "tests/support/process.h"
#include "tests/support/random_formula.h"
#include "tests/support/temporary_folder.h"

namespace lumo::smtlib {
namespace {

class PrintedTexts : public testing::TestWithParam<std::string>
{
 protected:
  void SetUp() override
  {
    if (GetParam().empty()) GTEST_SKIP() << "the program is not installed";
  }
  /// The output of the solver for the text, without warnings, which cvc5 prints for bytes beyond ASCII in strings
  std::string run(const std::string& text)
  {
    const std::string file = folder_.write("f.smt2", text);
    const test::Outcome outcome = test::run_program(GetParam(), {file}, folder_.get_path());
    return outcome.status == 0 ? outcome.out : outcome.out + outcome.err;
  }

 private:
  test::TemporaryFolder folder_;
};

TEST_P(PrintedTexts, LoadAsTrails)
{
  test::Random random;
  SCOPED_TRACE(random);
  for (int round = 0; round < 20; ++round) {
    TermManager mgr;
    const test::RandomTrail drawn = test::make_random_trail(mgr, random, 100);
    std::ostringstream out;
    print_trail(out, drawn.constants, drawn.trail);
    ASSERT_EQ(run(out.str()), "") << out.str();
  }
}

TEST_P(PrintedTexts, AreAnsweredAsScripts)
{
  test::Random random;
  SCOPED_TRACE(random);
  for (int round = 0; round < 20; ++round) {
    TermManager mgr;
    const test::RandomFormula formula = test::make_random_formula(mgr, random, {{1, 2, 3}, 10, true});
    std::ostringstream out;
    print_script(out, formula.constants, formula.assertions, false);
    const std::string answer = run(out.str());
    ASSERT_TRUE(answer == "sat\n" || answer == "unsat\n") << answer << out.str();
  }
}

TEST_P(PrintedTexts, AreGivenModels)
{
  TermManager mgr;
  std::ostringstream out;
  const std::vector<const Term*> terms = {mgr.make_constant("p q", mgr.make_bool_type())};
  print_script(out, terms, terms, true);
  const std::string answer = run(out.str());
  EXPECT_TRUE(answer.starts_with("sat\n")) << answer;
  EXPECT_NE(answer.find("(define-fun |p q| () Bool"), std::string::npos) << answer;
}

INSTANTIATE_TEST_SUITE_P(Solvers, PrintedTexts, testing::Values(LUMO_Z3_PROGRAM, LUMO_CVC5_PROGRAM),
                         [](const auto& row) { return row.index == 0 ? "z3" : "cvc5"; });

}  // namespace
}  // namespace lumo::smtlib
