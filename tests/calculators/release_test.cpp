// A calculator frees its memory when the term layer fails in the middle of a call. The program
// replaces the allocator by one that fails on demand; the sanitizers and valgrind look for leaks.

#include <algorithm>
#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include "lumo/calculators/calculator_table.h"
#include "tests/calculators/calls.h"
#include "tests/support/failing_allocator.h"
#include "tests/support/notation.h"

namespace lumo::test {
namespace {

/// One row with a manager that has only the terms of the call, so the call must still make everything else. Below
/// its definitions is one from another caller.
class Scene
{
 public:
  explicit Scene(const EdgeCase& row)
      : row_(row), t_(parse_term(mgr_, row.application)), value_(parse_term(mgr_, row.value))
  {
    defs_.emplace(parse_term(mgr_, "sentinel"), mgr_.make_true(), true);
  }

  void call() { (*find_calculator(mgr_, t_->get_symbol()))(&mgr_, t_, value_, defs_); }

  /// Removes the definitions above the one from another caller, which must still exist.
  [[nodiscard]] std::vector<Definition> take()
  {
    std::vector<Definition> found = take_definitions(defs_);
    if (found.empty() || found.front().term != parse_term(mgr_, "sentinel")) {
      ADD_FAILURE() << "the stack has lost what was there before";
      return found;
    }
    defs_.emplace(found.front().term, found.front().value, true);
    found.erase(found.begin());
    return found;
  }
  [[nodiscard]] std::vector<Definition> parse_expected() { return parse_definitions(mgr_, row_); }
  /// Expects that existing terms are found again.
  void expect_same_terms()
  {
    EXPECT_EQ(parse_term(mgr_, row_.application), t_) << row_;
    EXPECT_EQ(parse_term(mgr_, row_.value), value_) << row_;
  }
  [[nodiscard]] std::size_t get_num_numerals() const { return mgr_.get_numerals().size(); }

 private:
  const EdgeCase& row_;
  TermManager mgr_;
  const Term* t_;
  const Term* value_;
  ModelStore::DefinitionStack defs_;
};

bool is_prefix(const std::vector<Definition>& part, const std::vector<Definition>& whole)
{
  return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

/// The number of numerals after a call in which nothing fails.
std::size_t count_numerals(const EdgeCase& row)
{
  Scene scene(row);
  scene.call();
  EXPECT_EQ(scene.take(), scene.parse_expected()) << row;
  return scene.get_num_numerals();
}

TEST(FailingAllocation, AnywhereInACallLosesNothingAndLeavesAPrefixOfTheDefinitions)
{
  long num_failures = 0;
  long num_partial = 0;
  for (const EdgeCase& row : get_edge_cases()) {
    if (!row.message.empty()) continue;
    const std::size_t num_numerals = count_numerals(row);
    num_failures +=
        fail_everywhere([&row] { return std::make_unique<Scene>(row); }, [](Scene& scene) { scene.call(); },
                        [&](Scene& scene) {
                          const std::vector<Definition> found = scene.take();
                          if (!found.empty()) ++num_partial;
                          EXPECT_TRUE(is_prefix(found, scene.parse_expected())) << row;
                          scene.expect_same_terms();

                          scene.call();
                          EXPECT_EQ(scene.take(), scene.parse_expected())
                              << row << ": the manager is usable after the failure";
                          scene.expect_same_terms();
                          EXPECT_EQ(scene.get_num_numerals(), num_numerals) << row << ": none was made twice";
                        });
  }
  EXPECT_GT(num_failures, 1000);
  EXPECT_GT(num_partial, 10) << "some calls fail between their two pushes";
}

TEST(FailingAllocation, WhileARefusalIsMadeLeavesTheStackAloneAndTheTextWhole)
{
  long num_failures = 0;
  for (const EdgeCase& row : get_edge_cases()) {
    if (row.message.empty()) continue;
    const auto expect_refusal = [&row](Scene& scene) {
      try {
        scene.call();
        ADD_FAILURE() << row << ": the call got through";
      } catch (const Exception& e) {
        countdown = -1;  // the text needs memory
        EXPECT_STREQ(e.what(), row.message.c_str());
      }
      EXPECT_TRUE(scene.take().empty()) << row;
    };
    num_failures += fail_everywhere([&row] { return std::make_unique<Scene>(row); }, expect_refusal,
                                    [&](Scene& scene) {
                                      EXPECT_TRUE(scene.take().empty()) << row;
                                      expect_refusal(scene);
                                      scene.expect_same_terms();
                                    });
  }
  EXPECT_GT(num_failures, 100);
}

TEST(RefusalWithoutAnException, AllocatesNothingWhereNumbersFitAWord)
{
  constexpr std::size_t kMaxLength = 40;  // of an application of narrow literals
  int num_refusals = 0;
  for (const EdgeCase& row : get_edge_cases()) {
    if (row.message.empty() || row.application.size() > kMaxLength ||
        row.application.find("x64") != std::string::npos)
      continue;
    TermManager mgr;
    const Term* t = parse_term(mgr, row.application);
    const Term* value = parse_term(mgr, row.value);
    ModelStore::DefinitionStack defs;
    static_cast<void>(try_calculate(&mgr, t, value, defs));  // the call may make the value's numeral
    const long before = num_allocations;
    const adhoccalculator::Refusal refusal = try_calculate(&mgr, t, value, defs);
    EXPECT_EQ(num_allocations, before) << row;
    EXPECT_EQ(refusal.get_text(), row.message);
    ++num_refusals;
  }
  EXPECT_GT(num_refusals, 60);
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
