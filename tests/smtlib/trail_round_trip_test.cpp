// Trails that are printed and read back.

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/elimination/eliminate.h"
#include "lumo/smtlib/trail_printer.h"
#include "lumo/smtlib/trail_reader.h"
#include "tests/smtlib/random_trail.h"
#include "tests/support/notation.h"
#include "tests/support/numbered.h"
#include "tests/support/random_formula.h"

namespace lumo::smtlib {
namespace {

using test::numbered;
using test::parse_term;
using Terms = std::vector<const Term*>;

std::string print_text(const Terms& constants, const Trail& trail)
{
  std::ostringstream out;
  print_trail(out, constants, trail);
  return out.str();
}

void expect_equal(const Trail& found, const Trail& expected)
{
  ASSERT_EQ(found.steps.size(), expected.steps.size());
  for (std::size_t i = 0; i < found.steps.size(); ++i) {
    ASSERT_EQ(found.steps[i].constant, expected.steps[i].constant) << i;
    ASSERT_EQ(found.steps[i].application, expected.steps[i].application) << i;
    ASSERT_EQ(found.steps[i].free, expected.steps[i].free) << i;
    ASSERT_EQ(found.steps[i].original, nullptr) << i;
  }
  EXPECT_EQ(found.facts, expected.facts);
}

TEST(TrailRoundTrip, KeepsRandomTrails)
{
  test::Random random;
  SCOPED_TRACE(random);
  for (int round = 0; round < 500; ++round) {
    TermManager mgr;
    const test::RandomTrail drawn = test::make_random_trail(mgr, random, 1U << random.index(7));
    const std::size_t num_terms = mgr.get_num_terms();
    const std::string text = print_text(drawn.constants, drawn.trail);
    SCOPED_TRACE(text);
    ASSERT_NO_FATAL_FAILURE(expect_equal(read_trail(mgr, drawn.constants, text), drawn.trail));
    ASSERT_EQ(mgr.get_num_terms(), num_terms);
  }
}

TEST(TrailRoundTrip, KeepsWhatAnEliminationGives)
{
  test::Random random;
  SCOPED_TRACE(random);
  for (int round = 0; round < 300; ++round) {
    TermManager mgr;
    const test::RandomFormula formula = test::make_random_formula(mgr, random, {});
    const Trail trail = eliminate(mgr, formula.assertions).trail;
    const std::string text = print_text(formula.constants, trail);
    SCOPED_TRACE(text);
    ASSERT_NO_FATAL_FAILURE(expect_equal(read_trail(mgr, formula.constants, text), trail));
  }
}

TEST(TrailRoundTrip, KeepsNamesWithEveryPrintableCharacter)
{
  std::string all;
  for (char c = ' '; c <= '~'; ++c) {
    if (c != '|' && c != '\\') all += c;
  }
  TermManager mgr;
  const DataType* sort = mgr.make_bool_type();
  Terms constants;
  for (const char c : all)
    constants.push_back(mgr.make_constant(std::string(2, c), sort));
  constants.push_back(mgr.make_constant(all, sort));
  constants.push_back(mgr.make_constant("", sort));
  constants.push_back(mgr.make_constant("\t\r\n\xc3\xa9", sort));
  Trail trail;
  for (const Term* constant : constants) {
    const Term* fresh = mgr.make_constant("\"u" + constant->get_symbol()->get_name(), sort);
    trail.steps.push_back({fresh, mgr.make_term(mgr.make_not_symbol(), {constant}), {1}, nullptr});
    trail.facts.push_back(fresh);
  }
  expect_equal(read_trail(mgr, constants, print_text(constants, trail)), trail);
}

TEST(TrailRoundTrip, KeepsManySteps)
{
  constexpr std::size_t kSteps = 100'000;
  TermManager mgr;
  const DataType* sort = mgr.make_bv_type(8);
  const Symbol* add = mgr.make_bv_add_symbol(8);
  Terms constants{mgr.make_constant("x", sort)};
  Trail trail;
  const Term* last = constants[0];
  for (std::size_t i = 0; i < kSteps; ++i) {
    constants.push_back(mgr.make_constant(numbered("y", i), sort));
    const Term* fresh = mgr.make_constant(numbered("u!", i), sort);
    trail.steps.push_back({fresh, mgr.make_term(add, {last, constants.back()}), {0b11}, nullptr});
    last = fresh;
  }
  expect_equal(read_trail(mgr, constants, print_text(constants, trail)), trail);
}

TEST(TrailRoundTrip, KeepsDeepAndSharedApplications)
{
  constexpr std::size_t kDepth = 100'000;
  TermManager mgr;
  const Term* x = parse_term(mgr, "x8");
  const Term* y = parse_term(mgr, "y8");
  const Term* z = parse_term(mgr, "z8");
  const Symbol* add = mgr.make_bv_add_symbol(8);
  const Term* deep = x;
  const Term* shared = x;
  for (std::size_t i = 0; i < kDepth; ++i) {
    deep = mgr.make_term(mgr.make_bv_sub_symbol(8), {deep, y});
    shared = mgr.make_term(mgr.make_bv_mul_symbol(8), {shared, shared});
  }
  const Term* u = mgr.make_fresh_constant("u!", mgr.make_bv_type(8));
  const Term* v = mgr.make_fresh_constant("u!", mgr.make_bv_type(8));
  const Term* w = mgr.make_fresh_constant("u!", mgr.make_bv_type(8));
  const Trail trail{{{u, mgr.make_term(add, {shared, z}), {0b10}, nullptr},
                     {v, mgr.make_term(add, {u, deep}), {0b01}, nullptr},
                     {w, mgr.make_term(add, {shared, deep}), {}, nullptr}},
                    {}};
  expect_equal(read_trail(mgr, Terms{x, y, z}, print_text({x, y, z}, trail)), trail);
}

}  // namespace
}  // namespace lumo::smtlib
