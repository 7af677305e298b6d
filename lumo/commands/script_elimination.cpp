#include "lumo/commands/script_elimination.h"

#include <algorithm>
#include <string>

#include "lumo/smtlib/script_printer.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

namespace {

using smtlib::ForeignRole;
using smtlib::ForeignTerms;

/// The terms that must keep their values: foreign ones, their arguments, and what declarations mention.
std::vector<const Term*> list_kept(const ForeignTerms& foreign, const ForeignTerms::Needs& needs)
{
  std::vector<const Term*> kept;
  const auto keep = [&kept](const Term* t) {
    if (!t->get_sort()->is_opaque()) kept.push_back(t);
  };
  for (const ForeignTerms::Index term : needs.terms) {
    keep(foreign.get_placeholder(term));
    const auto args = foreign.get_args(term);
    std::for_each(args.begin(), args.end(), keep);
  }
  std::for_each(needs.constants.begin(), needs.constants.end(), keep);
  return kept;
}

/// Finds the foreign terms that lumo cannot evaluate even if it knows the values of all Booleans and bit-vectors.
class UnknownTerms
{
 public:
  explicit UnknownTerms(const ForeignTerms& foreign) : foreign_(foreign), is_unknown_(foreign.size()) {}

  /// Terms must be added in ascending order.
  bool add(ForeignTerms::Index term) { return is_unknown_[term] = find(term); }

 private:
  [[nodiscard]] bool find(ForeignTerms::Index term) const;

  const ForeignTerms& foreign_;
  std::vector<bool> is_unknown_;
};

bool UnknownTerms::find(ForeignTerms::Index term) const
{
  const ForeignRole role = foreign_.get_head_of(term).role;
  if (role == ForeignRole::kBinder || role == ForeignRole::kOther) return true;
  if (!foreign_.sorts.is_understood(foreign_.get_placeholder(term)->get_sort())) return true;
  const auto args = foreign_.get_args(term);
  return std::any_of(args.begin(), args.end(), [&](const Term* arg) {
    const DataType* sort = arg->get_sort();
    if (!sort->is_opaque()) return false;
    // The interpretation of a function is read as one of scalars.
    const bool is_refused = role == ForeignRole::kDeclared && smtlib::as_array(sort) != nullptr;
    return is_refused || is_unknown_[foreign_.find(arg)];
  });
}

/// The foreign terms on which something else than the assertions of the rest depends.
std::vector<ForeignTerms::Index> list_used_outside(const ForeignTerms& foreign, const ScriptElimination& rest)
{
  std::vector<const Term*> roots;
  for (const Step& step : rest.elimination.trail.steps)
    roots.push_back(step.application);
  for (const ForeignTerms::Index term : rest.needs.terms) {
    for (std::size_t i = 0; i < foreign.get_args(term).size(); ++i)
      roots.push_back(rest.forms->get_arg(term, i));
  }
  std::erase_if(roots, [](const Term* t) { return t->get_sort()->is_opaque(); });
  std::vector<ForeignTerms::Index> used;
  for (const Term* constant : collect_constants(roots)) {
    const ForeignTerms::Index term = foreign.find(constant);
    if (term != ForeignTerms::kNone) used.push_back(term);
  }
  std::sort(used.begin(), used.end());
  return used;
}

/// A prefix of fresh constants such that no foreign function has the name of one.
std::string make_prefix(const ForeignTerms& foreign)
{
  std::string prefix = "u";
  for (const smtlib::ForeignFunction& function : foreign.functions) {
    while (function.name.starts_with(prefix + '!'))
      prefix += '!';
  }
  return prefix;
}

const Term* make_equal(TermManager& mgr, const Term* lhs, const Term* rhs)
{
  const DataType* sort = lhs->get_sort();
  return mgr.make_term(sort->is_bool() ? mgr.make_iff_symbol() : mgr.make_eq_symbol(sort), {lhs, rhs});
}

}  // namespace

ScriptElimination eliminate_script(TermManager& mgr, const smtlib::Script& script, bool eliminates)
{
  const std::vector<const Term*> assertions = script.get_asserted_terms();
  ScriptElimination rest;
  std::vector<const Term*> kept;
  std::string prefix(EliminationOptions().prefix);
  if (script.foreign != nullptr) {
    rest.forms = std::make_unique<smtlib::ForeignForms>(*script.foreign);
    rest.needs = script.foreign->find_needs(assertions);
    kept = list_kept(*script.foreign, rest.needs);
    prefix = make_prefix(*script.foreign);
  }
  EliminationOptions options;
  options.kept = kept;
  options.prefix = prefix;
  rest.elimination = eliminates ? eliminate(mgr, assertions, options) : Elimination{assertions, {}};
  std::erase(rest.elimination.assertions, mgr.make_true());
  for (std::size_t i = 0; i < rest.elimination.kept.size(); ++i) {
    if (rest.elimination.kept[i] != kept[i]) rest.forms->replace(kept[i], rest.elimination.kept[i]);
  }
  return rest;
}

void add_questions(TermManager& mgr, const ForeignTerms& foreign, ScriptElimination& rest)
{
  UnknownTerms unknown(foreign);
  const std::vector<ForeignTerms::Index> used = list_used_outside(foreign, rest);
  for (const ForeignTerms::Index term : rest.needs.terms) {
    const Term* placeholder = foreign.get_placeholder(term);
    if (!unknown.add(term) || placeholder->get_sort()->is_opaque()) continue;
    const bool is_binder = foreign.get_head_of(term).role == ForeignRole::kBinder;
    if (is_binder && !std::binary_search(used.begin(), used.end(), term)) continue;
    const Term* constant = mgr.make_fresh_constant("lumo!value", placeholder->get_sort());
    rest.questions.push_back({term, constant});
    rest.elimination.assertions.push_back(make_equal(mgr, constant, placeholder));
  }
}

void print_rest(std::ostream& out, const ScriptElimination& rest)
{
  if (rest.forms == nullptr || rest.needs.terms.empty()) {
    smtlib::print_script(out, {}, rest.elimination.assertions, true);
  } else {
    smtlib::print_script(out, rest.elimination.assertions, true, *rest.forms);
  }
}

}  // namespace lumo::commands
