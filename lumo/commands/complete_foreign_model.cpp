#include "lumo/commands/complete_foreign_model.h"

#include <algorithm>

#include "lumo/elimination/extend.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

namespace {

using smtlib::ForeignEvaluation;
using smtlib::ForeignRole;
using smtlib::ForeignTerms;
using Source = ForeignEvaluation::Source;

/// Makes a model of the rest one of the script, and checks it.
class Completion
{
 public:
  Completion(TermManager& mgr, const smtlib::Script& script, const ScriptElimination& rest,
             smtlib::ForeignModel& solver_model)
      : mgr_(mgr),
        script_(script),
        foreign_(*script.foreign),
        rest_(rest),
        solver_model_(solver_model),
        model_(&mgr),
        evaluation_(foreign_, rest.needs.terms, solver_model, model_)
  {}

  void extend();
  void check();
  void count(Statistics& statistics) const;
  [[nodiscard]] CompletedModel make_model();

 private:
  void believe_quantifiers();
  void check_values() const;

  TermManager& mgr_;
  const smtlib::Script& script_;
  const ForeignTerms& foreign_;
  const ScriptElimination& rest_;
  smtlib::ForeignModel& solver_model_;
  ModelStore model_;
  ForeignEvaluation evaluation_;
  std::vector<ForeignTerms::Index>
      believed_;  ///< quantifiers of which the solver has said nothing by themselves
  std::size_t num_believed_assertions_ = 0;
};

void Completion::extend()
{
  define_values(model_, solver_model_.get_values());
  for (const ForeignQuestion& question : rest_.questions)
    evaluation_.trust(question.term, model_.get_value(question.constant));
  believe_quantifiers();
  evaluation_.evaluate_rest(*rest_.forms);
  try {
    lumo::extend(mgr_, rest_.elimination.trail, model_);
  } catch (const Exception& e) {
    throw CheckFailure({}, std::string("the model cannot be extended: ") + e.what());
  }
  evaluation_.evaluate_script(*rest_.forms);
}

/// Quantifiers without a question occur in assertions only. Their values are not known: the check skips the assertions.
void Completion::believe_quantifiers()
{
  for (const ForeignTerms::Index term : rest_.needs.terms) {
    const bool is_believed = foreign_.get_head_of(term).role == ForeignRole::kBinder &&
                             evaluation_.get_source(term) == Source::kUnknown;
    if (!is_believed) continue;
    believed_.push_back(term);
    evaluation_.trust(term, mgr_.make_true());
  }
}

/// A term without a value is one whose arguments have changed, or one that the solver's model does not define in a way
/// that lumo understands.
void Completion::check_values() const
{
  for (const ForeignTerms::Index term : rest_.needs.terms) {
    const bool needs_value = !foreign_.get_placeholder(term)->get_sort()->is_opaque();
    if (!needs_value || evaluation_.get_source(term) != Source::kUnknown) continue;
    throw CheckFailure({}, "the value of a term " + smtlib::make_excerpt(foreign_.get_head_of(term).text) +
                               " under the extended model is not known");
  }
}

void Completion::check()
{
  check_values();
  const std::vector<const Term*> assertions = script_.get_asserted_terms();
  const TermTable<bool, 7> is_believed =
      believed_.empty() ? TermTable<bool, 7>() : mark_containing(foreign_, assertions, believed_);
  for (std::size_t i = 0; i < assertions.size(); ++i) {
    if (const bool* mark = is_believed.find(assertions[i]->get_id()); mark != nullptr && *mark) {
      ++num_believed_assertions_;
    } else if (!model_.holds(assertions[i])) {
      throw CheckFailure(script_.assertions[i].place, "this assertion is false under the extended model");
    }
  }
}

void Completion::count(Statistics& statistics) const
{
  statistics.foreign_terms = rest_.needs.terms.size();
  for (const ForeignTerms::Index term : rest_.needs.terms) {
    if (evaluation_.get_source(term) == Source::kSolver) ++statistics.believed_terms;
  }
  statistics.believed_assertions = num_believed_assertions_;
}

CompletedModel Completion::make_model()
{
  CompletedModel completed;
  for (const Term* constant : script_.constants)
    completed.values.push_back({constant, model_.get_value(constant)});
  std::vector<std::string> defaults;
  for (const smtlib::ForeignFunction& function : foreign_.functions) {
    if (function.is_interpreted || solver_model_.defines(function.name)) continue;
    if (std::string text = solver_model_.make_default_definition(function); !text.empty())
      defaults.push_back(std::move(text));
  }
  completed.definitions = solver_model_.get_element_texts();
  const std::vector<std::string>& texts = solver_model_.get_texts();
  completed.definitions.insert(completed.definitions.end(), texts.begin(), texts.end());
  completed.definitions.insert(completed.definitions.end(), defaults.begin(), defaults.end());
  return completed;
}

}  // namespace

TermTable<bool, 7> mark_containing(const ForeignTerms& foreign, std::span<const Term* const> roots,
                                   std::span<const ForeignTerms::Index> terms)
{
  TermTable<bool, 7> marks;
  std::vector<bool> is_marked(foreign.size());
  for (const ForeignTerms::Index term : terms)
    is_marked[term] = true;
  const ForeignTerms::Needs needs = foreign.find_needs(roots);
  std::vector<const Term*> all(roots.begin(), roots.end());
  for (const ForeignTerms::Index term : needs.terms) {
    all.push_back(foreign.get_placeholder(term));
    all.insert(all.end(), foreign.get_args(term).begin(), foreign.get_args(term).end());
  }
  // Arguments of a term, and those of a foreign term, have smaller ids than the term or its placeholder.
  for (const Term* t : collect_terms(all)) {
    const ForeignTerms::Index term = foreign.find(t);
    const std::span<const Term* const> args =
        term == ForeignTerms::kNone ? t->get_args() : foreign.get_args(term);
    marks[t->get_id()] =
        (term != ForeignTerms::kNone && is_marked[term]) ||
        std::any_of(args.begin(), args.end(), [&](const Term* arg) { return marks[arg->get_id()]; });
  }
  return marks;
}

CompletedModel complete_foreign_model(TermManager& mgr, const smtlib::Script& script,
                                      const ScriptElimination& rest, smtlib::ForeignModel& solver_model,
                                      Statistics& statistics, PhaseClock& clock)
{
  clock.enter(Phase::kExtend, mgr.get_num_terms());
  Completion completion(mgr, script, rest, solver_model);
  completion.extend();
  clock.enter(Phase::kCheck, mgr.get_num_terms());
  completion.check();
  completion.count(statistics);
  CompletedModel completed = completion.make_model();
  clock.leave();
  return completed;
}

}  // namespace lumo::commands
