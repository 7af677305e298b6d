// Elimination and extension at sizes at which recursion would exhaust the stack, walking a tree instead of
// its graph would not end, and quadratic time would be noticeable.

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/eliminate.h"
#include "lumo/elimination/extend.h"
#include "lumo/elimination/rules.h"
#include "lumo/numbers/bvnumber.h"
#include "tests/support/numbered.h"
#include "tests/support/small_stack.h"
#include "tests/terms/operator_cases.h"

namespace lumo::test {
namespace {

constexpr std::size_t kSize = 100'000;
constexpr unsigned long kWidth = 8;

/// Terms of one width in their own manager
class LargeProblem
{
 public:
  const Term* constant(std::size_t i)
  {
    return mgr_.make_constant(numbered("x", i), mgr_.make_bv_type(kWidth));
  }
  const Term* add(const Term* a, const Term* b)
  {
    return mgr_.make_term(mgr_.make_bv_add_symbol(kWidth), {a, b});
  }
  const Term* divide(const Term* a, const Term* b)
  {
    return mgr_.make_term(mgr_.make_bv_udiv_symbol(kWidth), {a, b});
  }
  const Term* negate(const Term* t) { return mgr_.make_term(mgr_.make_bv_neg_symbol(kWidth), {t}); }
  void assert_equal(const Term* t, unsigned long value)
  {
    const Term* numeral = mgr_.make_bv_number(value, kWidth);
    assertions_.push_back(mgr_.make_term(mgr_.make_eq_symbol(mgr_.make_bv_type(kWidth)), {t, numeral}));
  }

  /// Eliminates, extends the empty model and expects that it makes the assertions true.
  void expect_solved(std::size_t num_steps, std::size_t num_left)
  {
    const Elimination elimination = eliminate(mgr_, assertions_);
    EXPECT_EQ(elimination.trail.steps.size(), num_steps);
    EXPECT_EQ(elimination.assertions.size(), num_left);
    ModelStore model(&mgr_);
    extend(mgr_, elimination.trail, model);
    EXPECT_EQ(find_violated(mgr_, assertions_, model), assertions_.size());
  }

 private:
  TermManager mgr_;
  std::vector<const Term*> assertions_;
};

TEST(LargeElimination, GoesUpAChainOnItsLeft)
{
  run_on_small_stack([] {
    LargeProblem problem;
    const Term* t = problem.constant(0);
    for (std::size_t i = 1; i <= kSize; ++i)
      t = problem.add(t, problem.constant(i));
    problem.assert_equal(t, 42);
    problem.expect_solved(kSize + 1, 0);
  });
}

TEST(LargeElimination, GoesUpAChainOnItsRight)
{
  run_on_small_stack([] {
    LargeProblem problem;
    const Term* t = problem.constant(0);
    for (std::size_t i = 1; i <= kSize; ++i)
      t = problem.negate(problem.divide(problem.constant(i), t));
    problem.assert_equal(t, 42);
    problem.expect_solved(2 * kSize + 1, 0);
  });
}

TEST(LargeElimination, DropsAChainThatDoesNotMatter)
{
  run_on_small_stack([] {
    LargeProblem problem;
    const Term* t = problem.divide(problem.constant(0), problem.constant(0));
    for (std::size_t i = 1; i <= kSize; ++i)
      t = problem.divide(problem.constant(i), t);
    problem.assert_equal(problem.add(problem.constant(kSize + 1), t), 42);
    problem.expect_solved(2, 0);
  });
}

TEST(LargeElimination, DropsTheUsesOfAWholeChainAtOnce)
{
  run_on_small_stack([] {
    LargeProblem problem;
    // A term that is used twice stays until its only parent is eliminated.
    const Term* t = problem.add(problem.constant(0), problem.constant(0));
    for (std::size_t i = 1; i <= kSize; ++i)
      t = problem.add(t, t);
    problem.assert_equal(problem.add(t, problem.constant(1)), 42);
    problem.expect_solved(2, 0);
  });
}

TEST(LargeElimination, LeavesAGraphWhoseTreeIsExponential)
{
  run_on_small_stack([] {
    LargeProblem problem;
    const Term* t = problem.constant(0);
    for (std::size_t i = 1; i <= kSize; ++i)
      t = problem.add(t, t);
    problem.assert_equal(t, 0);
    problem.expect_solved(0, 1);
  });
}

TEST(LargeElimination, LeavesATermOfManyUses)
{
  run_on_small_stack([] {
    LargeProblem problem;
    const Term* shared = problem.add(problem.constant(0), problem.constant(0));
    for (std::size_t i = 1; i <= kSize; ++i)
      problem.assert_equal(problem.add(shared, problem.constant(i)), i % 256);
    problem.expect_solved(2 * kSize, 0);
  });
}

/// An application of the symbol to constants that must be true, or have a value whose bits all matter.
const Term* make_wide_assertion(TermManager& mgr, const SymbolCase& symbol, const Symbol* s)
{
  const Term* t = mgr.make_term(s, make_arguments(mgr, symbol, "x"));
  const DataType* type = s->get_output_type();
  if (type->is_bool()) return t;
  const unsigned long w = type->get_width();
  const QNumber value = BVNumber::reduce(BVNumber::pow2(w - 1) + BVNumber::pow2(w / 3) + QNumber(5), w);
  return mgr.make_term(mgr.make_eq_symbol(type), {t, mgr.make_bv_number(value, w)});
}

TEST(LargeElimination, TakesEachOperatorAtAHundredThousandBits)
{
  constexpr unsigned long kManyBits = 100'000;
  for (const OperatorCase& op : get_operator_cases()) {
    SCOPED_TRACE(op);
    TermManager mgr;
    const SymbolCase symbol = op.symbols(kManyBits).back();  // the first ite is of Booleans
    const std::vector<const Term*> assertions = {
        make_wide_assertion(mgr, symbol, op.make(mgr, symbol.parameters))};
    const unsigned long widest = *std::ranges::max_element(symbol.argument_widths);
    EXPECT_EQ(widest, op.kind <= Kind::kIff ? 0 : kManyBits);
    const Elimination elimination = eliminate(mgr, assertions);
    const bool is_kept = get_elimination_rule(op.kind).need == FreeNeed::kNever;
    EXPECT_EQ(elimination.assertions.size(), is_kept ? 1U : 0U);
    if (is_kept) continue;
    ModelStore model(&mgr);
    extend(mgr, elimination.trail, model);
    EXPECT_EQ(find_violated(mgr, assertions, model), 1U);
  }
}

}  // namespace
}  // namespace lumo::test
