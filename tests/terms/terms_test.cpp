// Applications: one object each, in the order of their making, at any depth.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/terms/term_manager.h"
#include "tests/support/random.h"
#include "tests/support/refusal.h"
#include "tests/support/small_stack.h"
#include "tests/terms/operator_cases.h"

namespace lumo::test {

namespace {

constexpr int kDepth = 1000000;

/// A shared graph over three constants of width 8. Equal seeds draw the same graph.
std::vector<const Term*> make_random_graph(TermManager& mgr, std::uint64_t stream, int count)
{
  Random random(stream);
  std::vector<const Term*> terms;
  for (const std::string name : {"x", "y", "z"})
    terms.push_back(mgr.make_constant(name, mgr.make_bv_type(8)));
  for (int i = 0; i < count; ++i) {
    // Recent terms are preferred, so that the graph grows deep.
    const auto pick = [&] {
      return terms[terms.size() - 1 - random.index(std::min<std::size_t>(20, terms.size()))];
    };
    switch (random.index(4)) {
      case 0:
        terms.push_back(mgr.make_term(mgr.make_bv_add_symbol(8), {pick(), pick()}));
        break;
      case 1:
        terms.push_back(mgr.make_term(mgr.make_bv_mul_symbol(8), {pick(), pick()}));
        break;
      case 2:
        terms.push_back(mgr.make_term(mgr.make_bv_not_symbol(8), {pick()}));
        break;
      default:
        terms.push_back(mgr.make_term(mgr.make_bv_rotate_left_symbol(3, 8), {pick()}));
        break;
    }
  }
  return terms;
}

}  // namespace

TEST(Applications, AreOneObjectEach)
{
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
  const Term* y = mgr.make_constant("y", mgr.make_bv_type(8));
  const Symbol* add = mgr.make_bv_add_symbol(8);
  const Term* sum = mgr.make_term(add, {x, y});
  const std::size_t num_terms = mgr.get_num_terms();
  EXPECT_EQ(mgr.make_term(add, {x, y}), sum);
  EXPECT_EQ(mgr.make_term(add, std::vector<const Term*>{x, y}), sum);
  EXPECT_EQ(mgr.get_num_terms(), num_terms);
  EXPECT_NE(mgr.make_term(add, {y, x}), sum);
  EXPECT_NE(mgr.make_term(add, {x, x}), sum);
  EXPECT_NE(mgr.make_term(mgr.make_bv_sub_symbol(8), {x, y}), sum);
  EXPECT_EQ(mgr.get_num_terms(), num_terms + 3);
}

TEST(Applications, AreBuiltAsTheyStand)
{
  TermManager mgr;
  const Term* t = mgr.make_term(mgr.make_and_symbol(), {mgr.make_true(), mgr.make_false()});
  EXPECT_EQ(t->get_symbol(), mgr.make_and_symbol());
  const Term* sum =
      mgr.make_term(mgr.make_bv_add_symbol(8), {mgr.make_bv_number(1, 8), mgr.make_bv_number(2, 8)});
  EXPECT_EQ(sum->get_symbol(), mgr.make_bv_add_symbol(8));
}

TEST(Applications, OfLeavesAreTheLeaves)
{
  TermManager mgr;
  for (const Term* t :
       {mgr.make_true(), mgr.make_false(), mgr.make_bv_number(5, 8), mgr.make_bv_number(-1, 100),
        mgr.make_constant("x", mgr.make_bv_type(8)), mgr.make_fresh_constant("x", mgr.make_bool_type())})
  {
    const std::size_t num_terms = mgr.get_num_terms();
    EXPECT_EQ(mgr.make_term(t->get_symbol(), {}), t);
    EXPECT_EQ(mgr.make_term(t->get_symbol(), nullptr, 0), t);
    EXPECT_EQ(mgr.get_num_terms(), num_terms);
  }
}

TEST(Applications, OfLeavesToArgumentsAreRefused)
{
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
  const Symbol* five = mgr.make_bv_number(5, 8)->get_symbol();
  expect_refusal(
      mgr, [&] { mgr.make_term(x->get_symbol(), {x}); }, "x takes 0 arguments, but 1 was given");
  expect_refusal(
      mgr,
      [&] {
        mgr.make_term(five, {x, x});
      },
      "#x05 takes 0 arguments, but 2 were given");
  expect_refusal(
      mgr, [&] { mgr.make_term(mgr.get_true_symbol(), {nullptr}); },
      "true takes 0 arguments, but 1 was given");
}

TEST(Applications, AreNumberedInTheOrderOfTheirMaking)
{
  TermManager mgr;
  std::size_t next = mgr.get_num_terms();
  EXPECT_EQ(mgr.make_true()->get_id(), 0);
  EXPECT_EQ(mgr.make_false()->get_id(), 1);
  EXPECT_EQ(next, 2);
  EXPECT_EQ(mgr.make_constant("x", mgr.make_bool_type())->get_id(), next++);
  EXPECT_EQ(mgr.make_bv_number(5, 8)->get_id(), next++);
  const Term* x = mgr.make_constant("x", mgr.make_bool_type());
  EXPECT_EQ(mgr.make_term(mgr.make_not_symbol(), {x})->get_id(), next++);
  EXPECT_EQ(mgr.make_fresh_constant("f", mgr.make_bool_type())->get_id(), next++);
  EXPECT_EQ(mgr.get_num_terms(), next);
}

TEST(Applications, OfARandomGraphAreFoundAgain)
{
  constexpr int count = 50000;
  TermManager mgr;
  const std::vector<const Term*> made = make_random_graph(mgr, 1, count);
  const std::size_t num_terms = mgr.get_num_terms();
  const std::size_t num_symbols = mgr.get_num_symbols();
  EXPECT_GT(num_terms, count / 2);
  EXPECT_EQ(make_random_graph(mgr, 1, count), made);
  EXPECT_EQ(mgr.get_num_terms(), num_terms);
  EXPECT_EQ(mgr.get_num_symbols(), num_symbols);
  for (const Term* t : made) {
    EXPECT_LT(t->get_id(), num_terms);
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      EXPECT_LT(t->get_arg(i)->get_id(), t->get_id());
  }
}

TEST(Applications, OfEqualGraphsHaveEqualNumbersInTwoManagers)
{
  TermManager first;
  TermManager second;
  const std::vector<const Term*> left = make_random_graph(first, 2, 5000);
  const std::vector<const Term*> right = make_random_graph(second, 2, 5000);
  ASSERT_EQ(left.size(), right.size());
  for (std::size_t i = 0; i < left.size(); ++i) {
    EXPECT_EQ(left[i]->get_id(), right[i]->get_id());
    EXPECT_EQ(left[i]->get_symbol()->get_name(), right[i]->get_symbol()->get_name());
  }
}

TEST(Applications, NestAMillionDeepWithoutRecursion)
{
  run_on_small_stack([] {
    TermManager mgr;
    const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
    const auto build = [&] {
      const Term* t = x;
      for (int i = 0; i < kDepth; ++i)
        t = mgr.make_term(mgr.make_bv_add_symbol(8), {t, x});
      return t;
    };
    const Term* t = build();
    EXPECT_EQ(mgr.get_num_terms(), 3 + kDepth);
    EXPECT_EQ(build(), t);
    EXPECT_EQ(mgr.get_num_terms(), 3 + kDepth);
  });
}

}  // namespace lumo::test
