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
    EXPECT_EQ(std::string(e.what()).substr(0, 20), "Z3 failed and said: ") << e.what();
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
