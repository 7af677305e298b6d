// The term layer when memory runs out: texts, tables and manager stay usable, and nothing is lost. The
// program replaces the allocator by one that fails on demand; the sanitizers look for what is lost.

#include <memory>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/numeral_table.h"
#include "lumo/terms/term_manager.h"
#include "tests/support/failing_allocator.h"
#include "tests/terms/operator_cases.h"

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
  const DataType* type = mgr.make_bv_type(10);
  std::vector<const Term*> numerals;
  int num_failures = 0;
  for (int n = 0; n < 1000; ++n) {
    const std::size_t num_terms = mgr.get_num_terms();
    const Term* made = nullptr;
    for (long failing = 0; !survives(failing, [&] { made = mgr.make_bv_number(n, 10); }); ++failing) {
      ++num_failures;
      ASSERT_EQ(mgr.get_num_terms(), num_terms);
      ASSERT_EQ(mgr.get_numerals().size(), numerals.size());
      ASSERT_EQ(mgr.get_numerals().find(QNumber(n), type), nullptr);
      for (std::size_t i = 0; i < numerals.size(); ++i) {
        ASSERT_EQ(mgr.make_bv_number(i, 10), numerals[i]);
        ASSERT_EQ(*mgr.find_number(numerals[i]->get_symbol()), QNumber(i));
      }
    }
    numerals.push_back(made);
  }
  EXPECT_GT(num_failures, 20);
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
      return low;
    };
    if (survives(failing, [&] { (void)build(); })) break;
    ++num_failures;
    // The second and third time, nothing fails, and everything except the fresh constant is found again.
    const Term* first = build();
    const Term* second = build();
    ASSERT_EQ(first->get_symbol(), second->get_symbol());
    ASSERT_EQ(first->get_arg(0)->get_arg(0), second->get_arg(0)->get_arg(0));
    ASSERT_NE(first, second);
    ASSERT_LT(second->get_id(), mgr.get_num_terms());
  }
  EXPECT_GT(num_failures, 20);
}

TEST(FailingAllocation, LeavesAManagerUsableWhicheverOperatorIsMade)
{
  for (const OperatorCase& op : get_operator_cases()) {
    const SymbolCase symbol = op.symbols(200).front();
    TermManager reference;
    op.make(reference, symbol.parameters);
    const long num_failures = fail_everywhere(
        [] { return std::make_unique<TermManager>(); },
        [&](TermManager& mgr) { op.make(mgr, symbol.parameters); },
        [&](TermManager& mgr) {
          EXPECT_LE(mgr.get_num_symbols(), 2U) << op << ": a symbol that is not finished is not there";
          const Symbol* s = op.make(mgr, symbol.parameters);
          EXPECT_EQ(s->get_name(), symbol.name);
          EXPECT_EQ(op.make(mgr, symbol.parameters), s);
          EXPECT_EQ(mgr.get_num_symbols(), reference.get_num_symbols()) << op;
          const std::vector<const Term*> args = make_arguments(mgr, symbol, "x");
          EXPECT_EQ(mgr.make_term(s, args), mgr.make_term(s, args)) << op;
        });
    EXPECT_GT(num_failures, 2) << op;
  }
}

TEST(FailingAllocation, LeavesFreshConstantsTheirNumbers)
{
  const long num_failures = fail_everywhere(
      [] {
        auto mgr = std::make_unique<TermManager>();
        mgr->make_constant("u!0", mgr->make_bool_type());
        return mgr;
      },
      [](TermManager& mgr) { mgr.make_fresh_constant("u", mgr.make_bool_type()); },
      [](TermManager& mgr) {
        const Term* t = mgr.make_fresh_constant("u", mgr.make_bool_type());
        EXPECT_EQ(t->get_symbol()->get_name(), "u!1");
        EXPECT_EQ(mgr.make_constant("u!1", mgr.make_bool_type()), t);
      });
  EXPECT_GT(num_failures, 1);
}

namespace {

/// A manager that makes terms of each sort, with a record of them.
class Growth
{
 public:
  /// Makes the term that the number selects: a numeral, a constant, a fresh one, and applications.
  void make(std::size_t i)
  {
    const DataType* type = mgr_.make_bv_type(128);
    const Term* numeral = mgr_.make_bv_number(BVNumber::pow2(100) + QNumber(i), 128);
    const Term* constant = mgr_.make_constant("x" + std::to_string(i), type);
    const Term* sum = mgr_.make_term(mgr_.make_bv_add_symbol(128), {numeral, constant});
    const Symbol* rotation = mgr_.make_bv_rotate_left_symbol(i, 128);
    const Term* rotated = mgr_.make_term(rotation, {sum});
    mgr_.make_fresh_constant(kLongText, type);
    made_.push_back({numeral, constant, sum, rotated});
  }
  [[nodiscard]] std::size_t get_size() const { return made_.size(); }
  /// Expects that making all terms again finds the existing ones.
  void expect_found()
  {
    const std::vector<Terms> before = made_;
    made_.clear();
    for (std::size_t i = 0; i < before.size(); ++i) {
      make(i);
      ASSERT_EQ(made_[i], before[i]) << i;
    }
  }

 private:
  using Terms = std::vector<const Term*>;

  TermManager mgr_;
  std::vector<Terms> made_;
};

}  // namespace

TEST(FailingAllocation, LosesNothingOfTablesThatGrow)
{
  constexpr std::size_t kSize = 150;  // beyond the second growth of each table
  Growth growth;
  long num_failures = 0;
  while (growth.get_size() < kSize) {
    const std::size_t i = growth.get_size();
    long failing = 0;
    while (!survives(failing, [&] { growth.make(i); }))
      ++failing;
    num_failures += failing;
  }
  growth.expect_found();
  EXPECT_GT(num_failures, 300);
}

}  // namespace lumo::test
