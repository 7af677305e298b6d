#include "tests/elimination/elimination_judge.h"

#include <unordered_set>

#include "lumo/elimination/extend.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/term_walk.h"
#include "tests/support/term_text.h"
#include "tests/support/z3_terms.h"

namespace lumo::test {

namespace {

constexpr unsigned kMilliseconds = 2000;

std::string describe(const Step& step)
{
  std::string text = step.constant->get_symbol()->get_name() + " = " + make_term_text(step.application);
  text += ", free:";
  for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
    if (step.free[i]) text.append(" ").append(std::to_string(i));
  }
  return text;
}

bool is_constant(const TermManager& mgr, const Term* t) { return mgr.is_constant(t->get_symbol()); }

}  // namespace

std::string describe(const std::vector<const Term*>& assertions, const Elimination& elimination)
{
  std::string text;
  for (const Term* t : assertions)
    text += "\nassertion " + make_term_text(t);
  for (const Term* t : elimination.assertions)
    text += "\nrest      " + make_term_text(t);
  for (const Step& step : elimination.trail.steps)
    text += "\nstep      " + describe(step);
  for (const Term* t : elimination.trail.facts)
    text += "\nfact      " + make_term_text(t);
  return text;
}

EliminationJudge::EliminationJudge() : solver_(z3_, z3::solver::simple())
{
  solver_.set("timeout", kMilliseconds);
}

void EliminationJudge::check(TermManager& mgr, const std::vector<const Term*>& assertions,
                             Equivalence equivalence)
{
  const Question question{mgr, assertions, collect_constants(assertions), eliminate(mgr, assertions)};
  num_steps_ += question.elimination.trail.steps.size();
  const testing::ScopedTrace trace(__FILE__, __LINE__, describe(assertions, question.elimination));
  check_trail(question);
  count_unfinished(question);
  check_answer(question);
  if (equivalence == Equivalence::kAsked) check_equivalence(question);
}

void EliminationJudge::check_trail(const Question& question)
{
  std::unordered_set<const Term*> taken(question.constants.begin(), question.constants.end());
  std::unordered_set<const Term*> determined;  // constants that a step or a fact gives a value
  for (const Step& step : question.elimination.trail.steps) {
    EXPECT_TRUE(is_constant(question.mgr, step.constant)) << describe(step);
    EXPECT_TRUE(taken.insert(step.constant).second) << "not new: " << describe(step);
    EXPECT_TRUE(step.free.any()) << describe(step);
    for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
      if (!step.free[i]) continue;
      EXPECT_TRUE(is_constant(question.mgr, step.application->get_arg(i))) << describe(step);
      EXPECT_TRUE(determined.insert(step.application->get_arg(i)).second) << "free twice: " << describe(step);
    }
  }
  for (const Term* fact : question.elimination.trail.facts) {
    EXPECT_TRUE(is_constant(question.mgr, fact)) << make_term_text(fact);
    EXPECT_TRUE(determined.insert(fact).second) << "free twice: " << make_term_text(fact);
  }
}

void EliminationJudge::count_unfinished(const Question& question)
{
  const Elimination second = eliminate(question.mgr, question.elimination.assertions);
  if (!second.trail.steps.empty() || !second.trail.facts.empty()) ++num_unfinished_;
}

void EliminationJudge::check_answer(const Question& question)
{
  Z3Terms terms(question.mgr, z3_);
  const z3::expr original = terms.make_conjunction(question.assertions);
  const z3::check_result expected = ask(original);
  const z3::check_result answer = ask(terms.make_conjunction(question.elimination.assertions));
  if (answer == z3::sat) check_model(question, original);
  if (expected == z3::unknown || answer == z3::unknown) {
    ++num_unknown_;
    return;
  }
  EXPECT_EQ(answer, expected) << "where 0 is unsat and 1 is sat";
  ++(expected == z3::sat ? num_sat_ : num_unsat_);
}

void EliminationJudge::check_model(const Question& question, const z3::expr& original)
{
  TermManager& mgr = question.mgr;
  Z3Terms terms(mgr, z3_);
  ModelStore model(&mgr);
  const z3::model found = solver_.get_model();
  ModelStore::DefinitionStack defs;
  for (const Term* constant : collect_constants(question.elimination.assertions)) {
    // Constants without a value in Z3's model have none here either, as in a model that a solver prints.
    const z3::expr value = found.eval(terms.make(constant), false);
    if (value.is_numeral() || value.is_true() || value.is_false()) {
      defs.emplace(constant, read_value(mgr, value), true);
    }
  }
  model.replay(defs);

  extend(mgr, question.elimination.trail, model);
  EXPECT_EQ(find_violated(mgr, question.assertions, model), question.assertions.size());

  z3::model extended(z3_);
  for (const Term* constant : question.constants) {
    const z3::expr value = terms.make(model.get_value(constant));
    z3::func_decl declaration = terms.make(constant).decl();
    extended.add_const_interp(declaration, const_cast<z3::expr&>(value));
  }
  EXPECT_TRUE(extended.eval(original, false).is_true()) << extended;
}

void EliminationJudge::check_equivalence(const Question& question)
{
  Z3Terms originals(question.mgr, z3_);
  Z3Terms restored(question.mgr, z3_);
  for (const Step& step : question.elimination.trail.steps)
    restored.set_meaning(step.constant, step.application);
  const z3::expr rest = restored.make_conjunction(question.elimination.assertions) &&
                        restored.make_conjunction(question.elimination.trail.facts);
  const z3::check_result answer = ask(rest != originals.make_conjunction(question.assertions));
  EXPECT_NE(answer, z3::sat) << "not equivalent where " << solver_.get_model();
  if (answer == z3::unknown) ++num_unknown_;
}

z3::check_result EliminationJudge::ask(const z3::expr& expression)
{
  solver_.reset();
  solver_.add(expression);
  return solver_.check();
}

}  // namespace lumo::test
