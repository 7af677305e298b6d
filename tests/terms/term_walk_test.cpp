#include "lumo/terms/term_walk.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/small_stack.h"

namespace lumo::test {
namespace {

using Terms = std::vector<const Term*>;

TEST(TermWalk, MeetsEachTermOnceBehindItsArguments)
{
  TermManager mgr;
  const DataType* type = mgr.make_bv_type(8);
  const Term* y = mgr.make_constant("y", type);
  const Term* unrelated = mgr.make_constant("unrelated", type);
  const Term* x = mgr.make_constant("x", type);
  const Term* sum = mgr.make_term(mgr.make_bv_add_symbol(8), {x, y});
  const Term* one = mgr.make_bv_number(1, 8);
  const Term* product = mgr.make_term(mgr.make_bv_mul_symbol(8), {sum, sum});
  const Term* first = mgr.make_term(mgr.make_eq_symbol(type), {product, one});
  const Term* second = mgr.make_term(mgr.make_bv_ult_symbol(8), {x, sum});

  EXPECT_EQ(collect_terms(Terms{first, second, first}), (Terms{y, x, sum, one, product, first, second}));
  EXPECT_EQ(collect_constants(Terms{second}), (Terms{y, x}));
  EXPECT_EQ(collect_constants(Terms{unrelated}), (Terms{unrelated}));
  EXPECT_TRUE(collect_terms(Terms{}).empty());

  const GraphSize size = measure_graph(Terms{first, second, first});
  EXPECT_EQ(size.assertions, 3U);
  EXPECT_EQ(size.terms, 7U);
  EXPECT_EQ(size.applications, 4U);
  EXPECT_EQ(size.constants, 2U);
}

TEST(TermWalk, CopesWithDepthAndSharing)
{
  TermManager mgr;
  const Term* t = mgr.make_constant("x", mgr.make_bv_type(8));
  constexpr std::size_t kDepth = 100000;
  for (std::size_t i = 0; i < kDepth; ++i)
    t = mgr.make_term(mgr.make_bv_add_symbol(8), {t, t});
  run_on_small_stack([&] {
    const GraphSize size = measure_graph(Terms{t});
    EXPECT_EQ(size.applications, kDepth);
    EXPECT_EQ(size.constants, 1U);
  });
}

}  // namespace
}  // namespace lumo::test
