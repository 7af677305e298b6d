#include "lumo/commands/check_foreign_model.h"

#include <algorithm>

#include "lumo/commands/complete_foreign_model.h"
#include "lumo/model/model_value.h"
#include "lumo/smtlib/foreign_evaluation.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

namespace {

using smtlib::ForeignEvaluation;
using smtlib::ForeignTerms;
using Source = ForeignEvaluation::Source;

/// The terms without a value that lumo cannot evaluate for another reason than that of an argument.
std::vector<std::string> list_causes(const ForeignTerms& foreign, const ForeignEvaluation& evaluation,
                                     const std::vector<ForeignTerms::Index>& unknown)
{
  std::vector<std::string> heads;
  for (const ForeignTerms::Index term : unknown) {
    const auto args = foreign.get_args(term);
    const bool is_cause = std::all_of(args.begin(), args.end(), [&](const Term* arg) {
      const ForeignTerms::Index other = foreign.find(arg);
      return other == ForeignTerms::kNone || evaluation.get_source(other) != Source::kUnknown;
    });
    const std::string& head = foreign.get_head_of(term).text;
    if (is_cause && std::find(heads.begin(), heads.end(), head) == heads.end()) heads.push_back(head);
  }
  return heads;
}

}  // namespace

ForeignCheck check_foreign_model(const smtlib::Script& script, smtlib::ForeignModel& model, ModelStore& store)
{
  const ForeignTerms& foreign = *script.foreign;
  const std::vector<const Term*> assertions = script.get_asserted_terms();
  const ForeignTerms::Needs needs = foreign.find_needs(assertions);
  define_values(store, model.get_values());
  ForeignEvaluation evaluation(foreign, needs.terms, model, store);
  evaluation.evaluate_rest(smtlib::ForeignForms(foreign));

  std::vector<ForeignTerms::Index> unknown = needs.terms;
  std::erase_if(unknown,
                [&](ForeignTerms::Index term) { return evaluation.get_source(term) != Source::kUnknown; });
  ForeignCheck check;
  check.unknown = list_causes(foreign, evaluation, unknown);
  const TermTable<bool, 7> is_open =
      unknown.empty() ? TermTable<bool, 7>() : mark_containing(foreign, assertions, unknown);
  for (std::size_t i = 0; i < assertions.size(); ++i) {
    if (const bool* mark = is_open.find(assertions[i]->get_id()); mark != nullptr && *mark) {
      if (!check.open) check.open = i;
    } else if (!check.violated && !store.holds(assertions[i])) {
      check.violated = i;
    }
  }
  return check;
}

std::vector<const Term*> list_declared_constants(const smtlib::Script& script, const Term* t)
{
  std::vector<const Term*> roots{t};
  if (script.foreign != nullptr) {
    for (const ForeignTerms::Index term : script.foreign->find_needs(roots).terms) {
      const auto args = script.foreign->get_args(term);
      roots.insert(roots.end(), args.begin(), args.end());
    }
  }
  std::vector<const Term*> constants = collect_constants(roots);
  std::erase_if(constants, [&](const Term* constant) {
    return script.foreign != nullptr && script.foreign->find(constant) != ForeignTerms::kNone;
  });
  return constants;
}

}  // namespace lumo::commands
