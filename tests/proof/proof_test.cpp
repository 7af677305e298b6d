// For each row of the table, two solvers show that there is no value for which the definitions give the application
// another value. For the rows that are unsound by design, they show that there is one.

#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/proof/judges.h"
#include "tests/proof/proof_rows.h"
#include "tests/proof/proof_scene.h"
#include "tests/proof/row_names.h"

namespace lumo::test {
namespace {

/// Calls visit with each query of a row and the manager of its terms.
template <class Visit>
void for_each_query(const ProofRow& row, Visit visit)
{
  for (const unsigned long w : get_proof_widths(row)) {
    for (const Parameters& parameters : choose_parameters(row.kind, w)) {
      if (!is_in_scope(row, parameters)) continue;
      ProofScene scene(row, parameters);
      for (const ProofQuery& query : scene.make_queries())
        visit(scene.get_manager(), query);
    }
  }
}

/// The number of queries of a row with a wrong answer, and the number of queries.
struct Tally
{
  std::size_t num_queries = 0;
  std::size_t num_surprises = 0;
};

Tally count_surprises_of_z3(const ProofRow& row)
{
  Z3Judge judge;
  Tally tally;
  for_each_query(row, [&](const TermManager& mgr, const ProofQuery& query) {
    const solvers::Answer answer = judge.ask(mgr, query.assertions);
    ++tally.num_queries;
    if (answer == query.expected) return;
    ++tally.num_surprises;
    std::cout << "z3: " << query.what << ": " << to_string(answer) << '\n';
  });
  return tally;
}

Tally count_surprises_of_cvc5(const ProofRow& row)
{
  Cvc5Judge judge;
  std::vector<std::string> whats;
  std::vector<std::string> expected;
  for_each_query(row, [&](const TermManager& /*mgr*/, const ProofQuery& query) {
    judge.add(query.assertions);
    whats.push_back(query.what);
    expected.emplace_back(to_string(query.expected));
  });
  std::vector<std::string> answers = judge.ask();
  EXPECT_EQ(answers.size(), expected.size());
  answers.resize(expected.size());
  Tally tally{expected.size(), 0};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (answers[i] == expected[i]) continue;
    ++tally.num_surprises;
    std::cout << "cvc5: " << whats[i] << ": " << answers[i] << '\n';
  }
  return tally;
}

class Proof : public testing::TestWithParam<ProofRow>
{};

TEST_P(Proof, HoldsInZ3)
{
  const Tally tally = count_surprises_of_z3(GetParam());
  EXPECT_EQ(tally.num_surprises, 0U);
  EXPECT_GE(tally.num_queries, get_proof_widths(GetParam()).size());
}

TEST_P(Proof, HoldsInCvc5)
{
  if (!Cvc5Judge::is_installed()) GTEST_SKIP() << "cvc5 is not installed";
  const Tally tally = count_surprises_of_cvc5(GetParam());
  EXPECT_EQ(tally.num_surprises, 0U);
  EXPECT_GE(tally.num_queries, get_proof_widths(GetParam()).size());
}

INSTANTIATE_TEST_SUITE_P(Rows, Proof, testing::ValuesIn(get_proof_rows().begin(), get_proof_rows().end()),
                         name_row);

// -----------------------------------------------------------------------------------------------------------
// Wrong rows must not be proven.

constexpr Scope kAtEvery = Scope::kEvery;

/// Rows that are wrong at every width. In the last, either step from the application to the value is wrong.
constexpr ProofRow kWrongRows[] = {
    {Kind::kAnd, kAtEvery, "xx", "v", "", "a := v; b := false"},
    {Kind::kIff, kAtEvery, "xn", "v", "", "a := v"},
    {Kind::kIte, Scope::kVectors, "nxx", "v", "", "a := v; b := (bvadd v one)"},
    {Kind::kEq, kAtEvery, "xn", "false", "", "a := b"},
    {Kind::kBvNeg, kAtEvery, "x", "v", "", "x := (bvnot v)"},
    {Kind::kBvOr, kAtEvery, "xx", "v", "", "a := v; b := one"},
    {Kind::kBvAdd, kAtEvery, "xx", "v", "", "a := v; b := one"},
    {Kind::kBvSub, kAtEvery, "ex", "v", "", "b := (bvnot v); a := zero"},
    {Kind::kBvMul, kAtEvery, "xn", "v", "", "a := (bvmul inverse v)"},
    {Kind::kBvUlt, kAtEvery, "nx", "true", "", "b := (bvadd a one)"},
    {Kind::kBvSle, kAtEvery, "xn", "false", "(distinct b least)", "a := (bvadd b one)"},
    {Kind::kBvZeroExtend, kAtEvery, "x", "v", "is_one", "x := (bvnot low)"},
    {Kind::kBvComp, kAtEvery, "xx", "v", "", "a := zero; b := zero"},
    {Kind::kBvMul, kAtEvery, "nx", "v", "(= product zero)", "b := (bvadd (bvmul inverse v) one)",
     Standing::kSound, "(bvmul product v)"},
};

class WrongProof : public testing::TestWithParam<ProofRow>
{};

/// All queries except those whether the condition can hold
std::size_t count_claims(const ProofRow& row)
{
  std::size_t num_claims = 0;
  for_each_query(row, [&num_claims](const TermManager& /*mgr*/, const ProofQuery& query) {
    num_claims += query.expected == solvers::Answer::kUnsat ? 1 : 0;
  });
  return num_claims;
}

TEST_P(WrongProof, IsRefutedByZ3)
{
  testing::internal::CaptureStdout();
  const Tally tally = count_surprises_of_z3(GetParam());
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(tally.num_surprises, count_claims(GetParam()));
}

TEST_P(WrongProof, IsRefutedByCvc5)
{
  if (!Cvc5Judge::is_installed()) GTEST_SKIP() << "cvc5 is not installed";
  testing::internal::CaptureStdout();
  const Tally tally = count_surprises_of_cvc5(GetParam());
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(tally.num_surprises, count_claims(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Rows, WrongProof, testing::ValuesIn(kWrongRows), name_row);

TEST(WrongRow, IsRefusedIfItWantsTermsFromACalculatorThatRefusesOrComputesWithTheNumeral)
{
  constexpr ProofRow kRefused = {Kind::kBvAnd, kAtEvery, "xn", "v", "", ""};
  EXPECT_THROW(static_cast<void>(ProofScene(kRefused, {8}).make_definitions("xn")), std::logic_error);
  constexpr ProofRow kComputed = {Kind::kEq, kAtEvery, "xn", "false", "", ""};
  EXPECT_THROW(static_cast<void>(ProofScene(kComputed, {8}).make_definitions("xn")), std::logic_error);
}

}  // namespace
}  // namespace lumo::test
