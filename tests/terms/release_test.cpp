// The term layer when memory runs out: texts, tables and manager stay usable, and nothing is lost. The
// program replaces the allocator by one that fails on demand; the sanitizers look for what is lost.

#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "model/model_store.h"
#include "numbers/bvnumber.h"
#include "terms/exception.h"
#include "terms/numeral_table.h"
#include "terms/term_manager.h"
#include "tests/support/failing_allocator.h"

namespace lumo::test {

namespace {

const std::string kLongText(200, 'x');  // lies on the heap

}  // namespace

TEST(FailingAllocation, LeavesAnExceptionWithoutATextForOnce)
{
  const Exception e(kLongText);
  countdown = 0;
  const char* text = e.what();
  countdown = -1;
  EXPECT_STREQ(text, "");
  EXPECT_EQ(e.what(), kLongText);
}

TEST(FailingAllocation, PassesThroughTheConstructionOfAnException)
{
  const Exception original(kLongText);
  int num_failures = 0;
  while (!survives(num_failures, [&] { Exception(original) << "appended"; }))
    ++num_failures;
  EXPECT_GT(num_failures, 0);
  EXPECT_EQ(original.what(), kLongText);
}

TEST(FailingAllocation, LeavesANumeralTableAsItWas)
{
  TermManager mgr;
  std::vector<const Term*> terms(200);
  for (std::size_t i = 0; i < terms.size(); ++i)
    terms[i] = mgr.make_bv_number(static_cast<int>(i), 8);

  NumeralTable table;
  int num_failures = 0;
  for (const Term* t : terms) {
    const std::size_t size = table.size();
    for (long failing = 0;; ++failing) {
      if (survives(failing, [&] { table.insert(t->get_symbol(), QNumber(7), t); })) break;
      ++num_failures;
      for (std::size_t i = 0; i < size; ++i)
        ASSERT_EQ(table.find(terms[i]->get_symbol())->term, terms[i]);
      ASSERT_TRUE(table.empty() || table.find(t->get_symbol()) == nullptr);
    }
    ASSERT_EQ(table.size(), size + 1);
  }
  EXPECT_GT(num_failures, 2);
}

TEST(FailingAllocation, LeavesAManagerUsable)
{
  const QNumber large = BVNumber::pow2(100);
  int num_failures = 0;
  for (long failing = 0;; ++failing) {
    TermManager mgr;
    const auto build = [&] {
      const Term* x = mgr.make_constant(kLongText, mgr.make_bv_type(128));
      const Term* fresh = mgr.make_fresh_constant(kLongText, mgr.make_bv_type(128));
      const Term* sum = mgr.make_term(mgr.make_bv_add_symbol(128), {x, fresh});
      const Term* low = mgr.make_term(mgr.make_bv_extract_symbol(99, 3, 128), {sum});
      const Term* numeral = mgr.make_bv_number(large, 128);
      EXPECT_EQ(numeral->get_symbol()->get_name().size(), 34);
      ModelStore model(&mgr);
      ModelStore::DefinitionStack defs;
      defs.emplace(x, numeral, true);
      model.replay(defs);
      EXPECT_EQ(model.get_value(sum), numeral);
      EXPECT_EQ(model.get_value(low), mgr.make_bv_number(0, 97));
      return low;
    };
    if (survives(failing, [&] { (void)build(); })) break;
    ++num_failures;
    // A second and third time nothing fails, and all but the fresh constant is found again.
    const Term* first = build();
    const Term* second = build();
    ASSERT_EQ(first->get_symbol(), second->get_symbol());
    ASSERT_EQ(first->get_arg(0)->get_arg(0), second->get_arg(0)->get_arg(0));
    ASSERT_NE(first, second);
    ASSERT_LT(second->get_id(), mgr.get_num_terms());
  }
  EXPECT_GT(num_failures, 20);
}

}  // namespace lumo::test
