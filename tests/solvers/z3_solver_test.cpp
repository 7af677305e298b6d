#include "lumo/solvers/z3_solver.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/model/model_store.h"
#include "lumo/smtlib/script_reader.h"
#include "tests/support/numbered.h"
#include "tests/terms/operator_cases.h"

namespace lumo::test {
namespace {

using solvers::Answer;
using solvers::Solution;

/// Solves a text and expects that a model is one.
Answer solve(const std::string& text, bool wants_model = true)
{
  TermManager mgr;
  std::vector<const Term*> assertions;
  for (const smtlib::Assertion& assertion : smtlib::read_script(mgr, text).assertions)
    assertions.push_back(assertion.term);
  const Solution solution = solvers::solve_with_z3(mgr, assertions, wants_model);

  if (solution.answer != Answer::kSat || !wants_model) {
    EXPECT_TRUE(solution.model.empty());
  } else {
    ModelStore model(&mgr);
    ModelStore::DefinitionStack definitions;
    for (const ModelValue& definition : solution.model)
      definitions.emplace(definition.constant, definition.value, true);
    model.replay(definitions);
    for (const Term* assertion : assertions)
      EXPECT_EQ(model.get_value(assertion), mgr.make_true()) << text;
  }
  return solution.answer;
}

TEST(Z3Solver, SaysSatWithAModel)
{
  EXPECT_EQ(solve(""), Answer::kSat);
  EXPECT_EQ(solve("(assert true)"), Answer::kSat);
  EXPECT_EQ(solve("(declare-const p Bool)(declare-const q Bool)(assert (and p (not q)))"), Answer::kSat);
  EXPECT_EQ(solve("(declare-const x (_ BitVec 8))(declare-const y (_ BitVec 8))"
                  "(assert (= (bvmul x y) #x8f))(assert (bvult x y))(assert (bvult #x01 x))"),
            Answer::kSat);
}

TEST(Z3Solver, SaysUnsat)
{
  EXPECT_EQ(solve("(assert false)"), Answer::kUnsat);
  EXPECT_EQ(solve("(declare-const x (_ BitVec 8))(assert (bvult x #x05))(assert (bvult #x05 x))"),
            Answer::kUnsat);
}

TEST(Z3Solver, TakesConjunctionsApart)
{
  std::string pairs = "(let ((a0 (and p q)))";
  for (std::size_t i = 1; i < 100; ++i)
    pairs += numbered("(let ((a", i) + numbered(" (and a", i - 1) + numbered(" a", i - 1) + ")))";
  const std::string start = "(declare-const p Bool)(declare-const q Bool)";
  EXPECT_EQ(solve(start + "(assert " + pairs + "a99" + std::string(100, ')') + ")"), Answer::kSat);
  EXPECT_EQ(solve(start + "(assert (and (and p (not q)) (and q p)))"), Answer::kUnsat);
  EXPECT_EQ(solve(start + "(assert (and p (and q q)))(assert (not (and p q)))"), Answer::kUnsat);
}

TEST(Z3Solver, GivesNoModelIfNoneIsWanted)
{
  EXPECT_EQ(solve("(declare-const x (_ BitVec 8))(assert (= x #x05))", false), Answer::kSat);
}

TEST(Z3Solver, GivesValuesOfConstantsWhateverTheirNames)
{
  EXPECT_EQ(solve("(declare-const || Bool)(declare-const |0| Bool)(declare-const |k!0| (_ BitVec 8))"
                  "(declare-const |let| (_ BitVec 8))(declare-const |a (b| (_ BitVec 8))"
                  "(assert (not (= || |0|)))(assert (distinct |k!0| |let| |a (b| #x00))"),
            Answer::kSat);
}

TEST(Z3Solver, SolvesAtWideWidths)
{
  EXPECT_EQ(solve("(declare-const x (_ BitVec 10000))(declare-const y (_ BitVec 10000))"
                  "(assert (= (bvxor x y) (bvnot ((_ zero_extend 9999) #b1))))(assert (bvult x y))"),
            Answer::kSat);
}

// -----------------------------------------------------------------------------------------------------------
// Operators

class Z3SolverOperators : public testing::TestWithParam<OperatorCase>
{};

INSTANTIATE_TEST_SUITE_P(SmtLib, Z3SolverOperators, testing::ValuesIn(get_operator_cases()), kLabelOf);

const Term* make_equation(TermManager& mgr, const Term* t, const Term* u)
{
  const DataType* sort = t->get_symbol()->get_output_type();
  return mgr.make_term(sort->is_bool() ? mgr.make_iff_symbol() : mgr.make_eq_symbol(sort), {t, u});
}

/// All values of up to three arguments, one after the other
std::vector<std::vector<const Term*>> enumerate(TermManager& mgr, const SymbolCase& symbol)
{
  std::vector<std::vector<const Term*>> tuples = {{}};
  for (const unsigned long w : symbol.argument_widths) {
    std::vector<std::vector<const Term*>> longer;
    for (const std::vector<const Term*>& tuple : tuples) {
      for (int value = 0; value < 1 << std::max(w, 1UL); ++value) {
        longer.push_back(tuple);
        const Term* truth = value == 0 ? mgr.make_false() : mgr.make_true();
        longer.back().push_back(w == 0 ? truth : mgr.make_bv_number(value, w));
      }
    }
    tuples = std::move(longer);
  }
  return tuples;
}

/// Each application to numerals must equal the result that the solver finds for it.
TEST_P(Z3SolverOperators, MeansTheSameForZ3)
{
  for (const unsigned long w : {1UL, 2UL, 3UL}) {
    for (const SymbolCase& symbol : GetParam().symbols(w)) {
      TermManager mgr;
      const Symbol* op = GetParam().make(mgr, symbol.parameters);
      std::vector<const Term*> assertions;
      std::vector<const Term*> applications;
      for (const std::vector<const Term*>& args : enumerate(mgr, symbol)) {
        applications.push_back(mgr.make_term(op, args));
        const Term* result = mgr.make_fresh_constant("r", op->get_output_type());
        assertions.push_back(make_equation(mgr, applications.back(), result));
      }
      const Solution solution = solvers::solve_with_z3(mgr, assertions, true);
      ASSERT_EQ(solution.answer, Answer::kSat) << symbol;
      ModelStore model(&mgr);
      ASSERT_EQ(solution.model.size(), applications.size()) << symbol;
      ModelStore::DefinitionStack definitions;
      for (const ModelValue& definition : solution.model)
        definitions.emplace(definition.constant, definition.value, true);
      model.replay(definitions);
      for (const Term* assertion : assertions) {
        ASSERT_EQ(model.get_value(assertion->get_arg(0)), model.get_value(assertion->get_arg(1)))
            << symbol << " number " << assertion->get_id();
      }
    }
  }
}

}  // namespace
}  // namespace lumo::test
