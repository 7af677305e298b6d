// Runs every row of the table of edge cases as a test of its own, and checks that the table leaves nothing
// out.

#include <algorithm>
#include <cctype>
#include <set>
#include <typeinfo>

#include <gtest/gtest.h>

#include "calculators/calculator_table.h"
#include "tests/calculators/edge_cases.h"
#include "tests/support/notation.h"

namespace lumo::test {
namespace {

using adhoccalculator::AdHocCalculator;

std::string describe(const ModelStore::ModelDefinition& d)
{
  return d.term->get_symbol()->get_name() + " := " + d.value->get_symbol()->get_name();
}

class EdgeCaseTest : public testing::TestWithParam<EdgeCase>
{
 protected:
  EdgeCaseTest()
      : t_(parse_term(mgr_, GetParam().application)),
        value_(parse_term(mgr_, GetParam().value)),
        sentinel_(mgr_.make_constant("sentinel", mgr_.make_bool_type()))
  {
    defs_.push({sentinel_, mgr_.make_true(), true});
  }

  void call() { (*find_calculator(mgr_, t_->get_symbol()))(&mgr_, t_, value_, defs_); }

  /// The definitions above the sentinel, in the order of their pushes; the stack is empty afterwards.
  std::vector<ModelStore::ModelDefinition> take_definitions()
  {
    std::vector<ModelStore::ModelDefinition> taken;
    for (; !defs_.empty(); defs_.pop())
      taken.push_back(defs_.top());
    EXPECT_FALSE(taken.empty());
    EXPECT_EQ(taken.back().term, sentinel_) << "what was on the stack before is untouched";
    taken.pop_back();
    std::reverse(taken.begin(), taken.end());
    return taken;
  }

  void expect_definitions(const std::vector<ModelStore::ModelDefinition>& found)
  {
    const std::vector<std::string>& expected = GetParam().definitions;
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
      const std::size_t sign = expected[i].find(" := ");
      EXPECT_EQ(found[i].term, parse_term(mgr_, expected[i].substr(0, sign))) << expected[i];
      EXPECT_EQ(found[i].value, parse_term(mgr_, expected[i].substr(sign + 4)))
          << "expected " << expected[i] << ", got " << describe(found[i]);
      EXPECT_TRUE(found[i].flag);
    }
  }

  void expect_failure()
  {
    const EdgeCase& row = GetParam();
    try {
      call();
      FAIL() << "expected the message: " << row.message;
    } catch (const Exception& e) {
      EXPECT_STREQ(e.what(), row.message.c_str());
      EXPECT_EQ(typeid(e) == typeid(Exception), row.is_plain_exception);
      EXPECT_EQ(typeid(e) == typeid(AdHocCalculator::error), !row.is_plain_exception);
    }
  }

  TermManager mgr_;
  const Term* t_;
  const Term* value_;
  const Term* sentinel_;
  ModelStore::DefinitionStack defs_;
};

TEST_P(EdgeCaseTest, GivesExactlyTheDefinitionsOrTheMessage)
{
  if (GetParam().message.empty()) {
    call();
    expect_definitions(take_definitions());
  } else {
    expect_failure();
    EXPECT_TRUE(take_definitions().empty());
  }
}

TEST_P(EdgeCaseTest, IsIndependentOfEarlierCallsOfTheSameObject)
{
  // A different application of the same operator in between must leave no trace.
  for (int i = 0; i < 2; ++i) {
    if (GetParam().message.empty()) {
      call();
    } else {
      expect_failure();
    }
  }
  const std::vector<ModelStore::ModelDefinition> both = take_definitions();
  const auto middle = both.begin() + static_cast<std::ptrdiff_t>(both.size() / 2);
  expect_definitions({both.begin(), middle});
  expect_definitions({middle, both.end()});
}

std::string name_row(const testing::TestParamInfo<EdgeCase>& info)
{
  std::string name = info.param.application + " is " + info.param.value;
  for (char& c : name) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
  }
  return "Row" + std::to_string(info.index) + name;
}

INSTANTIATE_TEST_SUITE_P(Table, EdgeCaseTest, testing::ValuesIn(get_edge_cases()), name_row);

std::set<Kind> collect_kinds()
{
  TermManager mgr;
  std::set<Kind> kinds;
  for (const EdgeCase& row : get_edge_cases()) {
    kinds.insert(parse_term(mgr, row.application)->get_symbol()->get_kind());
  }
  return kinds;
}

TEST(EdgeCaseTable, CoversAllOperators) { EXPECT_EQ(collect_kinds().size(), kNumOperators); }

TEST(EdgeCaseTable, CoversAllFifteenMessages)
{
  std::set<std::string> found;
  for (const EdgeCase& row : get_edge_cases()) {
    if (!row.message.empty()) found.insert(row.is_plain_exception ? "expected constant, but " : row.message);
  }
  const std::set<std::string> all = {
      "Should not be called is never free!",
      "Term is not free!\n",
      "This atom is not unconstrained!",
      "This atom is not unconstraint!",
      "This Term is not unconstraint!",
      "should have been handled at the normalization step",
      "Is not free!",
      "Term was not free!",
      "not free!",
      "Cannot find a value, should be free!",
      "We cannot find a value for this atom!",
      "term was not free",
      "non-free term",
      "unexpected value from comp",
      "expected constant, but ",
  };
  EXPECT_EQ(found, all);
}

}  // namespace
}  // namespace lumo::test
