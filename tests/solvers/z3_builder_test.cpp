#include "lumo/solvers/z3_builder.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "lumo/smtlib/literals.h"
#include "lumo/solvers/answer.h"
#include "tests/support/gmp_number.h"
#include "tests/support/numbered.h"
#include "tests/support/random.h"
#include "tests/support/small_stack.h"

namespace lumo::test {
namespace {

class Z3BuilderTest : public testing::Test
{
 protected:
  std::string get_digits(const Term* numeral)
  {
    const Z3_ast built = Z3_simplify(z3_, builder_.build(numeral));
    return Z3_get_numeral_binary_string(z3_, built);
  }

  TermManager mgr_;
  solvers::Z3Session z3_;
  solvers::Z3Builder builder_{mgr_, z3_};
};

TEST_F(Z3BuilderTest, MakesSharedTermsOnce)
{
  const DataType* sort = mgr_.make_bv_type(8);
  const Term* t = mgr_.make_constant("x", sort);
  for (int i = 0; i < 100; ++i)
    t = mgr_.make_term(mgr_.make_bv_add_symbol(8), {t, t});
  const Z3_app built = Z3_to_app(z3_, builder_.build(t));
  EXPECT_EQ(Z3_get_app_arg(z3_, built, 0), Z3_get_app_arg(z3_, built, 1));
  EXPECT_EQ(builder_.build(t), Z3_app_to_ast(z3_, built));
  EXPECT_EQ(builder_.get_constants(), std::vector<const Term*>{mgr_.make_constant("x", sort)});
}

TEST_F(Z3BuilderTest, KeepsConstantsApartWhateverTheirNames)
{
  const Term* const odd[] = {mgr_.make_constant("", mgr_.make_bool_type()),
                             mgr_.make_constant(std::string("a\0b", 3), mgr_.make_bool_type()),
                             mgr_.make_constant(std::string("a\0c", 3), mgr_.make_bool_type()),
                             mgr_.make_constant("k!0", mgr_.make_bool_type()),
                             mgr_.make_constant("0", mgr_.make_bool_type())};
  for (const Term* t : odd) {
    for (const Term* u : odd)
      EXPECT_EQ(builder_.build(t) == builder_.build(u), t == u);
  }
  EXPECT_EQ(builder_.get_constants(), std::vector<const Term*>(std::begin(odd), std::end(odd)));
}

TEST_F(Z3BuilderTest, KeepsTheValuesOfNumerals)
{
  Random random;
  SCOPED_TRACE(random);
  for (const unsigned long w : {1UL, 8UL, 62UL, 63UL, 64UL, 65UL, 4095UL, 4096UL, 4097UL, 8192UL, 20001UL}) {
    for (int i = 0; i < 10; ++i) {
      Integer number;
      random.natural(number, w);
      if (i == 0) mpz_set_ui(number, 1);
      const Term* numeral = mgr_.make_bv_number(BVNumber::from_integer(number), w);
      EXPECT_EQ(Z3_get_bv_sort_size(z3_, Z3_get_sort(z3_, builder_.build(numeral))), w);
      ASSERT_EQ(smtlib::make_numeral(mgr_, get_digits(numeral), 2, w), numeral) << w;
    }
  }
}

TEST_F(Z3BuilderTest, TakesRotationsByAnyNumber)
{
  const Term* x = mgr_.make_constant("x", mgr_.make_bv_type(5));
  const unsigned long many = 5 * (1UL << 40) + 2;
  const Symbol* far = mgr_.make_bv_rotate_left_symbol(many, 5);
  const Symbol* near = mgr_.make_bv_rotate_left_symbol(2, 5);
  EXPECT_EQ(builder_.build(mgr_.make_term(far, {x})), builder_.build(mgr_.make_term(near, {x})));
}

TEST_F(Z3BuilderTest, SaysWhyZ3MakesNoExpression)
{
  EXPECT_NO_THROW(solvers::check_z3(z3_));
  static_cast<void>(Z3_mk_bv_sort(z3_, 0));
  try {
    solvers::check_z3(z3_);
    FAIL();
  } catch (const solvers::SolverError& e) {
    EXPECT_TRUE(std::string(e.what()).starts_with("the built-in solver, Z3, failed and said: ")) << e.what();
  }
}

TEST_F(Z3BuilderTest, BuildsWideTerms)
{
  constexpr unsigned long kWidth = 1'000'000;
  const Term* x = mgr_.make_constant("x", mgr_.make_bv_type(kWidth));
  const Term* ones = mgr_.make_bv_number(-1, kWidth);
  const Term* t = mgr_.make_term(mgr_.make_eq_symbol(mgr_.make_bv_type(kWidth)), {x, ones});
  EXPECT_EQ(Z3_get_sort_kind(z3_, Z3_get_sort(z3_, builder_.build(t))), Z3_BOOL_SORT);
}

TEST_F(Z3BuilderTest, RefusesWidthsThatZ3DoesNotHave)
{
  const unsigned long width = 1UL << 28U;
  const Term* x = mgr_.make_constant("x", mgr_.make_bv_type(width));
  const Term* const wide[] = {mgr_.make_term(mgr_.make_bv_concat_symbol(width, width), {x, x}),
                              mgr_.make_constant("y", mgr_.make_bv_type(4294967295)),
                              mgr_.make_bv_number(1, 4294967295)};
  for (const Term* t : wide) {
    try {
      static_cast<void>(builder_.build(t));
      ADD_FAILURE() << t->get_symbol()->get_output_type()->get_width();
    } catch (const solvers::SolverError& e) {
      EXPECT_TRUE(std::string(e.what()).starts_with(
          "the built-in solver, Z3, takes widths of at most 536870911 bits, but there is a term of "))
          << e.what();
    }
  }
}

// -----------------------------------------------------------------------------------------------------------
// Chains

const Symbol* make_and(TermManager& mgr) { return mgr.make_and_symbol(); }
const Symbol* make_or(TermManager& mgr) { return mgr.make_or_symbol(); }
const Symbol* make_bv_and(TermManager& mgr) { return mgr.make_bv_and_symbol(8); }
const Symbol* make_bv_or(TermManager& mgr) { return mgr.make_bv_or_symbol(8); }
const Symbol* make_bv_xor(TermManager& mgr) { return mgr.make_bv_xor_symbol(8); }
const Symbol* make_bv_add(TermManager& mgr) { return mgr.make_bv_add_symbol(8); }
const Symbol* make_bv_mul(TermManager& mgr) { return mgr.make_bv_mul_symbol(8); }

struct ChainCase
{
  const char* name;
  const Symbol* (*make)(TermManager& mgr);  ///< null for concatenation, whose symbols differ
};

class Z3BuilderChains : public Z3BuilderTest, public testing::WithParamInterface<ChainCase>
{
 protected:
  [[nodiscard]] bool is_concat() const { return GetParam().make == nullptr; }
  const Term* make_leaf(std::size_t i)
  {
    const DataType* sort = is_concat() ? mgr_.make_bv_type(2) : GetParam().make(mgr_)->get_output_type();
    return mgr_.make_constant(numbered("c", i), sort);
  }
  const Term* join(const Term* t, const Term* u)
  {
    if (!is_concat()) return mgr_.make_term(GetParam().make(mgr_), {t, u});
    const unsigned long w1 = t->get_symbol()->get_output_type()->get_width();
    const unsigned long w2 = u->get_symbol()->get_output_type()->get_width();
    return mgr_.make_term(mgr_.make_bv_concat_symbol(w1, w2), {t, u});
  }
  /// Nested in one of the possible ways, from the leaf `first` on.
  const Term* make_chain(std::size_t first, std::size_t num_leaves, Random& random)
  {
    if (num_leaves == 1) return make_leaf(first);
    const std::size_t num_left = 1 + random.index(num_leaves - 1);
    const Term* left = make_chain(first, num_left, random);
    return join(left, make_chain(first + num_left, num_leaves - num_left, random));
  }
  [[nodiscard]] unsigned count_args(const Term* t)
  {
    return Z3_get_app_num_args(z3_, Z3_to_app(z3_, builder_.build(t)));
  }
};

INSTANTIATE_TEST_SUITE_P(Operators, Z3BuilderChains,
                         testing::Values(ChainCase{"and", make_and}, ChainCase{"or", make_or},
                                         ChainCase{"bvand", make_bv_and}, ChainCase{"bvor", make_bv_or},
                                         ChainCase{"bvxor", make_bv_xor}, ChainCase{"bvadd", make_bv_add},
                                         ChainCase{"bvmul", make_bv_mul}, ChainCase{"concat", nullptr}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(Z3BuilderChains, BecomeOneApplicationToTheirLeavesInOrder)
{
  Random random;
  SCOPED_TRACE(random);
  constexpr std::size_t kNumLeaves = 9;
  const Term* t = make_chain(0, kNumLeaves, random);
  const Term* const roots[] = {t};
  builder_.count_uses(roots);
  if (is_concat()) {
    EXPECT_EQ(Z3_get_bv_sort_size(z3_, Z3_get_sort(z3_, builder_.build(t))), 2 * kNumLeaves);
    return;
  }
  ASSERT_EQ(count_args(t), kNumLeaves);
  const Z3_app app = Z3_to_app(z3_, builder_.build(t));
  for (unsigned i = 0; i < kNumLeaves; ++i)
    EXPECT_EQ(Z3_get_app_arg(z3_, app, i), builder_.build(make_leaf(i))) << i;
}

TEST_P(Z3BuilderChains, KeepWhatIsSharedAndWhatIsNotCounted)
{
  const Term* shared = join(make_leaf(0), make_leaf(1));
  const Term* t = join(shared, make_leaf(2));
  EXPECT_EQ(count_args(t), 2U);

  const Term* u = join(shared, make_leaf(3));
  const Term* v = join(make_leaf(4), u);
  const Term* const roots[] = {join(make_leaf(5), shared), v};
  builder_.count_uses(roots);
  EXPECT_EQ(count_args(v), is_concat() ? 2U : 3U);
  const Term* const more[] = {join(v, make_leaf(6)), v};
  builder_.count_uses(more);
  EXPECT_EQ(count_args(more[0]), 2U);
}

TEST_P(Z3BuilderChains, MeanWhatPairsMean)
{
  Random random;
  SCOPED_TRACE(random);
  Z3_solver solver = Z3_mk_solver(z3_);
  Z3_solver_inc_ref(z3_, solver);
  for (std::size_t num_leaves = 2; num_leaves <= 6; ++num_leaves) {
    const Term* t = make_chain(0, num_leaves, random);
    solvers::Z3Builder pairs(mgr_, z3_);
    // Constants are numbered in the order of their occurrence.
    for (std::size_t i = 0; i < num_leaves; ++i)
      ASSERT_EQ(builder_.build(make_leaf(i)), pairs.build(make_leaf(i)));
    const Term* const roots[] = {t};
    builder_.count_uses(roots);
    const Z3_ast equal = Z3_mk_eq(z3_, builder_.build(t), pairs.build(t));
    Z3_solver_push(z3_, solver);
    Z3_solver_assert(z3_, solver, Z3_mk_not(z3_, equal));
    EXPECT_EQ(Z3_solver_check(z3_, solver), Z3_L_FALSE) << num_leaves;
    Z3_solver_pop(z3_, solver, 1);
  }
  Z3_solver_dec_ref(z3_, solver);
}

TEST_P(Z3BuilderChains, MayBeLong)
{
  const Term* t = make_leaf(0);
  for (std::size_t i = 1; i < 20'000; ++i)
    t = i % 2 == 0 ? join(t, make_leaf(i)) : join(make_leaf(i), t);
  const Term* const roots[] = {t};
  run_on_small_stack([&] {
    builder_.count_uses(roots);
    EXPECT_EQ(count_args(t), is_concat() ? 2U : 20'000U);
  });
}

TEST_F(Z3BuilderTest, BuildsDeepTermsOnASmallStack)
{
  const Term* t = mgr_.make_constant("x", mgr_.make_bv_type(8));
  for (std::size_t i = 0; i < 30'000; ++i) {
    t = mgr_.make_term(mgr_.make_bv_add_symbol(8),
                       {mgr_.make_constant(numbered("y", i), mgr_.make_bv_type(8)), t});
  }
  run_on_small_stack([&] { EXPECT_NE(builder_.build(t), nullptr); });
}

}  // namespace
}  // namespace lumo::test
