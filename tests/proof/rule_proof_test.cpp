// For each rule of elimination, two solvers show that it keeps the meaning of what it replaces: with the values that
// extending a model gives, the old form equals the new one; and the new one equals the old one if the constants of the
// steps are what they stand for.

#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/elimination/rule_rows.h"
#include "tests/proof/judges.h"

namespace lumo::test {
namespace {

/// Calls visit with each claim of a row and the manager of its terms.
template <class Visit>
void for_each_claim(const RuleRow& row, unsigned long max_width, Visit visit)
{
  for (const unsigned long w : list_rule_widths(row, max_width)) {
    for (const RuleNumbers& numbers : list_instances(row, w)) {
      TermManager mgr;
      for (RuleClaim& claim : make_claims(mgr, read_rule(mgr, row, numbers))) {
        claim.what += " at width " + std::to_string(w);
        visit(mgr, claim);
      }
    }
  }
}

std::string get_expected(const RuleClaim& claim) { return claim.is_satisfiable ? "sat" : "unsat"; }

/// The claims that a solver did not confirm.
std::vector<std::string> list_surprises_of_z3(const RuleRow& row)
{
  Z3Judge judge;
  std::vector<std::string> surprises;
  for_each_claim(row, row.max_width_of_z3, [&](const TermManager& mgr, const RuleClaim& claim) {
    const std::string answer = to_string(judge.ask(mgr, claim.assertions));
    if (answer != get_expected(claim)) surprises.push_back(claim.what + ": " + answer);
  });
  return surprises;
}

std::vector<std::string> list_surprises_of_cvc5(const RuleRow& row)
{
  Cvc5Judge judge;
  std::vector<RuleClaim> claims;
  for_each_claim(row, row.max_width_of_cvc5, [&](const TermManager& /*mgr*/, const RuleClaim& claim) {
    judge.add(claim.assertions);
    claims.push_back({claim.what, {}, claim.is_satisfiable});
  });
  std::vector<std::string> answers = judge.ask();
  EXPECT_EQ(answers.size(), claims.size());
  answers.resize(claims.size());
  std::vector<std::string> surprises;
  for (std::size_t i = 0; i < claims.size(); ++i) {
    if (answers[i] != get_expected(claims[i])) surprises.push_back(claims[i].what + ": " + answers[i]);
  }
  return surprises;
}

class RuleProof : public testing::TestWithParam<RuleRow>
{};

TEST_P(RuleProof, HoldsInZ3)
{
  EXPECT_FALSE(list_rule_widths(GetParam(), GetParam().max_width_of_z3).empty());
  EXPECT_EQ(list_surprises_of_z3(GetParam()), std::vector<std::string>());
}

TEST_P(RuleProof, HoldsInCvc5)
{
  if (!Cvc5Judge::is_installed()) GTEST_SKIP() << "cvc5 is not installed";
  EXPECT_EQ(list_surprises_of_cvc5(GetParam()), std::vector<std::string>());
}

std::string name_rule(const testing::TestParamInfo<RuleRow>& info) { return std::string(info.param.name); }

INSTANTIATE_TEST_SUITE_P(Rules, RuleProof, testing::ValuesIn(get_rule_rows().begin(), get_rule_rows().end()),
                         name_rule);

// -----------------------------------------------------------------------------------------------------------
// Wrong rules must not be proven.

constexpr RuleFamily kAtWidths = RuleFamily::kWidths;

/// In each row one claim is wrong: that of the values, or that of the steps.
constexpr RuleRow kWrongRules[] = {
    {"values_of_bvadd", kAtWidths, "(bvadd x s)", "f := (bvadd x s)", "f", "x := (bvsub s (bvnot f))"},
    {"values_of_eq", kAtWidths, "(= x s)", "q := (= x s)", "q", "x := (ite q s (bvsub {zero} s))"},
    {"values_of_bvor", kAtWidths, "(bvor x y)", "f := (bvor x y)", "f", "x := f; y := {one}"},
    {"values_of_concat", RuleFamily::kParts, "(concat x y{n})", "f{m} := (concat x y{n})", "f{m}",
     "x := ((_ extract {m-1} {n}) f{m}); y{n} := (bvnot ((_ extract {n-1} 0) f{m}))"},
    {"values_of_a_guard", kAtWidths, "(bvult x s)", "q := (bvult x s)", "(and q (not (= s {zero})))",
     "x := (ite q (bvsub s {one}) {zero})"},
    {"values_of_bvmul", kAtWidths, "(bvmul x c)", "f := (bvmul x c)", "f", "x := (bvmul i f)",
     "(= (bvmul i c) {zero})", 6, 6},
    {"values_of_ite", RuleFamily::kBools, "(ite p b o)", "q := (ite p b o)", "q", "p := true; o := q"},
    {"steps_of_bvadd", kAtWidths, "(bvadd x s)", "f := (bvsub x s)", "f", "x := (bvsub f s)"},
    {"steps_of_bvshl", RuleFamily::kShifts, "(bvshl x {K})", "f{w-k} := ((_ extract {w-1} {k}) x)",
     "(concat f{w-k} {zeros})", "x := ((_ zero_extend {k}) f{w-k})"},
    {"steps_of_bvand", kAtWidths, "(bvand (bvand x s) y)", "f := (bvor x y)", "(bvand s f)",
     "x := f; y := f"},
};

class WrongRule : public testing::TestWithParam<RuleRow>
{};

TEST_P(WrongRule, IsRefutedByZ3) { EXPECT_NE(list_surprises_of_z3(GetParam()), std::vector<std::string>()); }

TEST_P(WrongRule, IsRefutedByCvc5)
{
  if (!Cvc5Judge::is_installed()) GTEST_SKIP() << "cvc5 is not installed";
  const std::vector<std::string> surprises = list_surprises_of_cvc5(GetParam());
  EXPECT_EQ(surprises, list_surprises_of_z3(GetParam()));
  for (const std::string& surprise : surprises) {
    EXPECT_TRUE(surprise.starts_with(GetParam().name.starts_with("values") ? "the values" : "the steps"));
    EXPECT_TRUE(surprise.ends_with(": sat")) << surprise;
  }
}

INSTANTIATE_TEST_SUITE_P(Rules, WrongRule, testing::ValuesIn(kWrongRules), name_rule);

}  // namespace
}  // namespace lumo::test
