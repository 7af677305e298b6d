// Runs every row of the table of edge cases as a test of its own, and checks that the table leaves nothing out.

#include <cctype>
#include <set>
#include <typeinfo>

#include <gtest/gtest.h>

#include "lumo/calculators/calculator_table.h"
#include "tests/calculators/calls.h"
#include "tests/calculators/enumeration.h"
#include "tests/support/notation.h"

namespace lumo::test {
namespace {

using adhoccalculator::AdHocCalculator;

std::vector<std::string> observed_texts;

void keep_text(const Exception& e) { observed_texts.emplace_back(e.what()); }

class EdgeCaseTest : public testing::TestWithParam<EdgeCase>
{
 protected:
  EdgeCaseTest() : before_(Exception::set_observer(keep_text)) { observed_texts.clear(); }
  ~EdgeCaseTest() override { Exception::set_observer(before_); }

  void call(const EdgeCase& row)
  {
    const Term* t = parse_term(mgr_, row.application);
    (*find_calculator(mgr_, t->get_symbol()))(&mgr_, t, parse_term(mgr_, row.value), defs_);
  }

  adhoccalculator::Refusal try_call(const EdgeCase& row)
  {
    const Term* t = parse_term(mgr_, row.application);
    return try_calculate(&mgr_, t, parse_term(mgr_, row.value), defs_);
  }

  void expect_definitions()
  {
    const std::vector<Definition> expected = parse_definitions(mgr_, GetParam());
    const std::vector<Definition> found = take_definitions(defs_);
    EXPECT_EQ(found, expected) << "expected " << describe(expected) << ", found " << describe(found);
  }

  void expect_failure()
  {
    const EdgeCase& row = GetParam();
    try {
      call(row);
      FAIL() << "expected the message: " << row.message;
    } catch (const Exception& e) {
      EXPECT_STREQ(e.what(), row.message.c_str());
      EXPECT_EQ(typeid(e) == typeid(Exception), row.is_plain_exception);
      EXPECT_EQ(typeid(e) == typeid(AdHocCalculator::error), !row.is_plain_exception);
    }
  }

  TermManager mgr_;
  ModelStore::DefinitionStack defs_;
  Exception::Observer before_;
};

TEST_P(EdgeCaseTest, GivesExactlyTheDefinitionsOrTheMessage)
{
  if (GetParam().message.empty()) {
    call(GetParam());
    expect_definitions();
    EXPECT_TRUE(observed_texts.empty());
    return;
  }
  const Term* sentinel = parse_term(mgr_, "sentinel");
  defs_.push({sentinel, mgr_.make_true(), true});
  expect_failure();
  ASSERT_EQ(defs_.size(), 1U) << "a refusal leaves the stack as it was";
  EXPECT_EQ(defs_.top().term, sentinel);

  // The observer runs once for an error, and once more for a plain exception, when the copy with the whole text is
  // made.
  std::vector<std::string> expected = {GetParam().message};
  if (GetParam().is_plain_exception) expected.insert(expected.begin(), "expected constant, but ");
  EXPECT_EQ(observed_texts, expected);
}

TEST_P(EdgeCaseTest, IsTheSameWithoutAnException)
{
  const EdgeCase& row = GetParam();
  const adhoccalculator::Refusal refusal = try_call(row);
  expect_definitions();
  EXPECT_EQ(static_cast<bool>(refusal), !row.message.empty());
  EXPECT_EQ(refusal.get_text(), row.message);
  EXPECT_EQ(refusal.is_missing_constant(), row.is_plain_exception);
  EXPECT_TRUE(observed_texts.empty()) << "no exception is built";
}

TEST_P(EdgeCaseTest, LeavesTheApplicationAndTheValueAsTheyWere)
{
  // Arguments and their order are compared in printed form, which does not rely on the manager's table.
  const Term* t = parse_term(mgr_, GetParam().application);
  const Term* value = parse_term(mgr_, GetParam().value);
  const std::string text = describe(t) + " is " + describe(value);
  static_cast<void>(try_call(GetParam()));
  EXPECT_EQ(describe(t) + " is " + describe(value), text);
}

TEST_P(EdgeCaseTest, IsIndependentOfEarlierCallsOfTheSameObject)
{
  // First run all other rows of the same operator through the same shared object.
  const Kind kind = parse_term(mgr_, GetParam().application)->get_symbol()->get_kind();
  for (const EdgeCase& other : get_edge_cases()) {
    if (parse_term(mgr_, other.application)->get_symbol()->get_kind() != kind) continue;
    try {
      call(other);
    } catch (const Exception&) {
      EXPECT_FALSE(other.message.empty());
    }
    take_definitions(defs_);
  }
  if (GetParam().message.empty()) {
    call(GetParam());
    expect_definitions();
  } else {
    expect_failure();
    EXPECT_TRUE(defs_.empty());
  }
}

std::string name_row(const testing::TestParamInfo<EdgeCase>& info)
{
  std::string name = "Row" + std::to_string(info.index) + info.param.application.substr(0, 60);
  name += " is " + info.param.value.substr(0, 20);
  for (char& c : name) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Table, EdgeCaseTest, testing::ValuesIn(get_edge_cases()), name_row);

TEST(EdgeCaseTable, CoversAllOperators)
{
  TermManager mgr;
  std::set<Kind> kinds;
  for (const EdgeCase& row : get_edge_cases()) {
    kinds.insert(parse_term(mgr, row.application)->get_symbol()->get_kind());
  }
  EXPECT_EQ(kinds.size(), kNumOperators);
}

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
