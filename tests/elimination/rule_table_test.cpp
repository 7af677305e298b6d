// The table of rules describes the code: what is eliminated, by which steps, what is left, and which values models are
// extended with. At a few widths, Z3 proves each rule; tests/proof/ has the proofs at many widths.

#include <algorithm>
#include <bitset>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <z3++.h>

#include "lumo/elimination/eliminate.h"
#include "lumo/elimination/extend.h"
#include "lumo/elimination/rules.h"
#include "lumo/terms/fold.h"
#include "lumo/terms/term_walk.h"
#include "tests/elimination/enumeration_judge.h"
#include "tests/elimination/rule_rows.h"
#include "tests/support/make_operator.h"
#include "tests/support/term_text.h"
#include "tests/support/z3_terms.h"

namespace lumo::test {
namespace {

bool has_letter_of(const Term* constant, std::string_view letters)
{
  return letters.find(constant->get_symbol()->get_name().front()) != std::string_view::npos;
}

constexpr std::string_view kShared = "stb";
constexpr std::string_view kNumerals = "cdi";

std::vector<const Term*> list_terms(const RuleTerms& terms)
{
  std::vector<const Term*> all{terms.old_form, terms.new_form, terms.condition};
  for (const auto* definitions : {&terms.steps, &terms.values}) {
    for (const RuleDefinition& definition : *definitions)
      all.push_back(definition.second);
  }
  return all;
}

/// The constants of the terms whose names begin with one of the letters.
Terms list_constants(const std::vector<const Term*>& terms, std::string_view letters)
{
  Terms constants = lumo::collect_constants(terms);
  std::erase_if(constants, [&](const Term* constant) { return !has_letter_of(constant, letters); });
  return constants;
}

void substitute_in(TermManager& mgr, RuleTerms& terms, const std::vector<RuleDefinition>& definitions)
{
  const auto change = [&](const Term*& t) { t = substitute(mgr, t, definitions); };
  change(terms.old_form);
  change(terms.new_form);
  change(terms.condition);
  for (auto* list : {&terms.steps, &terms.values}) {
    for (RuleDefinition& definition : *list) {
      change(definition.first);
      change(definition.second);
    }
  }
}

/// Compares an instance of a row, whose numerals are literals, with what the code does.
class RuleCheck
{
 public:
  RuleCheck(TermManager& mgr, RuleTerms terms)
      : mgr_(mgr), terms_(std::move(terms)), shared_(list_constants(list_terms(terms_), kShared))
  {}

  void check()
  {
    Terms kept{terms_.old_form};
    kept.insert(kept.end(), shared_.begin(), shared_.end());
    const Elimination elimination = eliminate(mgr_, {}, {kept, "u"});
    ASSERT_EQ(elimination.trail.steps.size(), terms_.steps.size());
    std::vector<RuleDefinition> names;
    for (std::size_t i = 0; i < terms_.steps.size(); ++i)
      names.emplace_back(terms_.steps[i].first, elimination.trail.steps[i].constant);
    substitute_in(mgr_, terms_, names);

    EXPECT_EQ(make_term_text(elimination.kept[0]), make_term_text(terms_.new_form));
    for (std::size_t i = 0; i < terms_.steps.size(); ++i)
      check_step(elimination.trail.steps[i], terms_.steps[i].second);
    check_values(elimination.trail);
  }

 private:
  void check_step(const Step& step, const Term* application)
  {
    EXPECT_EQ(make_term_text(step.application), make_term_text(application));
    for (std::size_t i = 0; i < application->get_num_args(); ++i) {
      const Term* arg = application->get_arg(i);
      const bool is_constant = arg->get_symbol()->get_kind() == Kind::kConstant;
      EXPECT_EQ(step.free[i], is_constant && !has_letter_of(arg, kShared)) << "argument " << i;
    }
  }

  void check_values(const Trail& trail)
  {
    Terms given = collect_constants(mgr_, {terms_.new_form});
    for (const Term* constant : shared_) {
      if (std::find(given.begin(), given.end(), constant) == given.end()) given.push_back(constant);
    }
    for (unsigned long bits = 0; bits < count_assignments(given); ++bits) {
      ModelStore model = make_model(mgr_, given, bits);
      ModelStore expected = make_model(mgr_, given, bits);
      extend(mgr_, trail, model);
      for (const RuleDefinition& value : terms_.values)
        expected.set_value(value.first, expected.get_value(value.second));
      for (const Term* constant : collect_constants(mgr_, {terms_.old_form})) {
        ASSERT_EQ(make_term_text(model.get_value(constant)), make_term_text(expected.get_value(constant)))
            << constant->get_symbol()->get_name() << " from" << test::describe(expected, given);
      }
    }
  }

  TermManager& mgr_;
  RuleTerms terms_;
  Terms shared_;
};

/// Checks an instance with all numerals for which its condition holds; returns their number.
std::size_t check_numerals(const RuleRow& row, const RuleNumbers& numbers)
{
  TermManager mgr;
  const RuleTerms terms = read_rule(mgr, row, numbers);
  const Terms numerals = list_constants(list_terms(terms), kNumerals);
  std::size_t num_cases = 0;
  for (unsigned long bits = 0; bits < count_assignments(numerals); ++bits) {
    ModelStore model = make_model(mgr, numerals, bits);
    if (!holds(mgr, {terms.condition}, model)) continue;
    std::vector<RuleDefinition> values;
    for (const Term* numeral : numerals)
      values.emplace_back(numeral, model.get_value(numeral));
    RuleTerms with_literals = terms;
    substitute_in(mgr, with_literals, values);
    RuleCheck(mgr, with_literals).check();
    ++num_cases;
  }
  return num_cases;
}

class Rule : public testing::TestWithParam<RuleRow>
{};

TEST_P(Rule, IsWhatTheCodeDoes)
{
  std::size_t num_cases = 0;
  for (unsigned long w = 0; w <= 3; ++w) {
    for (const RuleNumbers& numbers : list_instances(GetParam(), w)) {
      SCOPED_TRACE(w);
      num_cases += check_numerals(GetParam(), numbers);
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(num_cases, 0U);
}

TEST_P(Rule, IsProvenByZ3AtFewWidths)
{
  for (const unsigned long w : {0UL, 1UL, 2UL, 3UL, 5UL, 8UL}) {
    if (GetParam().max_width_of_z3 != 0 && w > GetParam().max_width_of_z3) continue;
    for (const RuleNumbers& numbers : list_instances(GetParam(), w)) {
      TermManager mgr;
      for (const RuleClaim& claim : make_claims(mgr, read_rule(mgr, GetParam(), numbers))) {
        z3::context z3;
        z3::solver solver(z3, "QF_BV");
        solver.add(Z3Terms(mgr, z3).make_conjunction(claim.assertions));
        EXPECT_EQ(solver.check(), claim.is_satisfiable ? z3::sat : z3::unsat)
            << claim.what << " at width " << w;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, Rule, testing::ValuesIn(get_rule_rows().begin(), get_rule_rows().end()),
                         [](const auto& row) { return std::string(row.param.name); });

// -----------------------------------------------------------------------------------------------------------
// Completeness

/// An application whose arguments are different constants: free ones where the mask says so.
const Term* make_application(TermManager& mgr, Kind kind, std::size_t mask, Terms& shared)
{
  constexpr unsigned long kWidth = 3;
  Parameters parameters{kWidth, 2, kWidth};
  if (get_operator_info(kind).rule == SortRule::kRotate || get_operator_info(kind).rule == SortRule::kExtend)
    parameters = {1, kWidth};
  if (get_operator_info(kind).rule == SortRule::kExtract) parameters = {1, 0, kWidth};
  if (get_operator_info(kind).rule == SortRule::kBool) parameters = {};
  const Symbol* s = make_operator(mgr, kind, parameters);
  std::vector<const Term*> args;
  for (std::size_t i = 0; i < s->get_arity(); ++i) {
    args.push_back(mgr.make_constant("a" + std::to_string(i), as_operator(s).get_argument_type(i)));
    if ((mask >> i & 1U) == 0) shared.push_back(args.back());
  }
  return mgr.make_term(s, args);
}

/// Which arguments of an application are free, if all are constants.
std::size_t find_mask(const Term* application)
{
  std::size_t mask = 0;
  for (std::size_t i = 0; i < application->get_num_args(); ++i) {
    const Term* arg = application->get_arg(i);
    if (arg->get_symbol()->get_kind() != Kind::kConstant) return 0;
    if (!has_letter_of(arg, kShared) && !has_letter_of(arg, kNumerals)) mask |= std::size_t{1} << i;
  }
  return mask;
}

TEST(RuleTable, HasEveryOperatorWithEveryChoiceOfFreeArguments)
{
  std::size_t num_rules = 0;
  for (const OperatorInfo& info : kOperators) {
    for (std::size_t mask = 1; mask < std::size_t{1} << info.arity; ++mask) {
      TermManager mgr;
      Terms kept;
      const Term* t = make_application(mgr, info.kind, mask, kept);
      kept.insert(kept.begin(), t);
      if (eliminate(mgr, {}, {kept, "u"}).kept[0] == t) continue;
      ++num_rules;
      const bool has_row =
          std::any_of(get_rule_rows().begin(), get_rule_rows().end(), [&](const RuleRow& row) {
            const unsigned long w = row.family == RuleFamily::kBools ? 0 : 3;
            TermManager row_mgr;
            const std::vector<RuleNumbers> instances = list_instances(row, w);
            if (instances.empty()) return false;
            const Term* old_form = read_rule(row_mgr, row, instances.front()).old_form;
            return old_form->get_symbol()->get_kind() == info.kind && find_mask(old_form) == mask;
          });
      EXPECT_TRUE(has_row) << make_term_text(t) << ", free: " << std::bitset<3>(mask);
    }
  }
  EXPECT_GT(num_rules, 50U);
}

}  // namespace
}  // namespace lumo::test
