// What a calculator holds is given back when the term layer fails in the middle of a call. The program
// replaces the allocator by one that fails on demand; the sanitizers and valgrind look for what is lost.

#include <algorithm>
#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

#include "calculators/calculator_table.h"
#include "tests/calculators/calls.h"
#include "tests/support/failing_allocator.h"
#include "tests/support/notation.h"

namespace lumo::test {
namespace {

/// Whether the call got through although the allocation of that number should fail, because it makes fewer.
bool survives(TermManager& mgr, const Term* t, const Term* value, ModelStore::DefinitionStack& defs,
              long failing)
{
  adhoccalculator::AdHocCalculator& calculator = *find_calculator(mgr, t->get_symbol());
  countdown = failing;
  try {
    calculator(&mgr, t, value, defs);
  } catch (const std::bad_alloc&) {
    return false;
  }
  countdown = -1;
  return true;
}

bool is_prefix(const std::vector<Definition>& part, const std::vector<Definition>& whole)
{
  return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

TEST(FailingAllocation, AnywhereInACallLosesNothingAndLeavesAPrefixOfTheDefinitions)
{
  int num_failures = 0;
  int num_partial = 0;
  for (const EdgeCase& row : get_edge_cases()) {
    if (!row.message.empty()) continue;
    for (long failing = 0;; ++failing) {
      TermManager mgr;  // a fresh one, so that the call has everything still to make
      const Term* t = parse_term(mgr, row.application);
      const Term* value = parse_term(mgr, row.value);
      ModelStore::DefinitionStack defs;
      const bool finished = survives(mgr, t, value, defs, failing);
      const std::vector<Definition> found = take_definitions(defs);
      const std::vector<Definition> expected = parse_definitions(mgr, row);
      ASSERT_TRUE(is_prefix(found, expected)) << row.application << ", allocation " << failing;
      if (finished) {
        ASSERT_EQ(found.size(), expected.size());
        break;
      }
      ++num_failures;
      if (!found.empty()) ++num_partial;

      ASSERT_TRUE(survives(mgr, t, value, defs, -1));
      ASSERT_EQ(take_definitions(defs), expected) << "the manager is usable after the failure";
    }
  }
  EXPECT_GT(num_failures, 100);
  EXPECT_GT(num_partial, 10) << "some calls fail between their two pushes";
}

TEST(FailingAllocation, WhileARefusalIsMadeLeavesTheStackEmptyAndTheTextWhole)
{
  int num_failures = 0;
  for (const EdgeCase& row : get_edge_cases()) {
    if (row.message.empty()) continue;
    for (long failing = 0;; ++failing) {
      TermManager mgr;
      const Term* t = parse_term(mgr, row.application);
      const Term* value = parse_term(mgr, row.value);
      ModelStore::DefinitionStack defs;
      bool is_refused = false;
      try {
        ASSERT_FALSE(survives(mgr, t, value, defs, failing)) << row.application;
        ++num_failures;
      } catch (const Exception& e) {
        countdown = -1;
        EXPECT_STREQ(e.what(), row.message.c_str());
        is_refused = true;
      }
      EXPECT_TRUE(defs.empty());
      if (is_refused) break;
    }
  }
  EXPECT_GT(num_failures, 100);
}

void throw_logic_error(const Exception& /*e*/) { throw std::logic_error("observed"); }

TEST(ThrowingObserver, PassesThroughEveryRefusalAndLeavesTheStackAlone)
{
  const Exception::Observer before = Exception::set_observer(throw_logic_error);
  for (const EdgeCase& row : get_edge_cases()) {
    if (row.message.empty()) continue;
    TermManager mgr;
    const Term* t = parse_term(mgr, row.application);
    const Term* value = parse_term(mgr, row.value);
    ModelStore::DefinitionStack defs;
    EXPECT_THROW((*find_calculator(mgr, t->get_symbol()))(&mgr, t, value, defs), std::logic_error);
    EXPECT_TRUE(defs.empty());
  }
  Exception::set_observer(before);
}

}  // namespace
}  // namespace lumo::test
