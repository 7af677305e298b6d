#include "tests/elimination/enumeration_judge.h"

#include <algorithm>
#include <unordered_set>

#include "lumo/elimination/extend.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/fold.h"

namespace lumo::test {

namespace {

unsigned long get_num_bits(const Term* constant)
{
  const DataType* type = constant->get_symbol()->get_output_type();
  return type->is_bool() ? 1 : type->get_width();
}

/// Gives each fresh constant the value of its application. One that is defined later may occur in it, so the
/// steps are processed repeatedly until all have their values.
void define_fresh(TermManager& mgr, const Trail& trail, ModelStore& model)
{
  std::unordered_set<const Term*> waiting;
  for (const Step& step : trail.steps)
    waiting.insert(step.constant);
  ModelStore::DefinitionStack defs;
  while (!waiting.empty()) {
    for (const Step& step : trail.steps) {
      if (!waiting.contains(step.constant)) continue;
      const Terms used = collect_constants(mgr, {step.application});
      if (std::any_of(used.begin(), used.end(), [&waiting](const Term* t) { return waiting.contains(t); }))
        continue;
      defs.emplace(step.constant, model.get_value(step.application), true);
      model.replay(defs);
      waiting.erase(step.constant);
    }
  }
}

Terms get_values(const Terms& terms, ModelStore& model)
{
  Terms values;
  for (const Term* t : terms)
    values.push_back(model.get_value(t));
  return values;
}

}  // namespace

ModelStore make_model(TermManager& mgr, const Terms& constants, unsigned long bits)
{
  ModelStore model(&mgr);
  ModelStore::DefinitionStack defs;
  for (const Term* constant : constants) {
    const unsigned long w = get_num_bits(constant);
    const QNumber number(bits & ((1UL << w) - 1));
    defs.emplace(constant, make_value(mgr, number, constant->get_symbol()->get_output_type()), true);
    bits >>= w;
  }
  model.replay(defs);
  return model;
}

std::string describe(ModelStore& model, const Terms& constants)
{
  std::string text;
  for (const Term* constant : constants) {
    text +=
        " " + constant->get_symbol()->get_name() + "=" + model.get_value(constant)->get_symbol()->get_name();
  }
  return text;
}

unsigned long count_assignments(const Terms& constants)
{
  unsigned long num_bits = 0;
  for (const Term* constant : constants)
    num_bits += get_num_bits(constant);
  return 1UL << num_bits;
}

bool holds(TermManager& mgr, const Terms& terms, ModelStore& model)
{
  return find_violated(mgr, terms, model) == terms.size();
}

Terms join(const Terms& first, const Terms& second)
{
  Terms all = first;
  all.insert(all.end(), second.begin(), second.end());
  return all;
}

Terms collect_constants(const TermManager& mgr, const Terms& terms)
{
  Terms constants;
  std::unordered_set<const Term*> seen;
  Terms stack = terms;
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    if (!seen.insert(t).second) continue;
    if (mgr.is_constant(t->get_symbol())) constants.push_back(t);
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      stack.push_back(t->get_arg(i));
  }
  std::sort(constants.begin(), constants.end(),
            [](const Term* a, const Term* b) { return a->get_id() < b->get_id(); });
  return constants;
}

std::string judge_by_enumeration(TermManager& mgr, const Terms& assertions, const Elimination& elimination,
                                 const Terms& kept)
{
  if (elimination.kept.size() != kept.size()) return "there is not one form for each kept term";
  const Terms originals = collect_constants(mgr, join(assertions, kept));
  for (unsigned long bits = 0; bits < count_assignments(originals); ++bits) {
    ModelStore model = make_model(mgr, originals, bits);
    define_fresh(mgr, elimination.trail, model);
    const bool rest_holds =
        holds(mgr, elimination.assertions, model) && holds(mgr, elimination.trail.facts, model);
    if (rest_holds != holds(mgr, assertions, model))
      return "not equivalent under" + describe(model, originals);
    if (get_values(kept, model) != get_values(elimination.kept, model))
      return "a kept term is not its form under" + describe(model, originals);
  }
  const Terms remaining = collect_constants(mgr, join(elimination.assertions, elimination.kept));
  for (unsigned long bits = 0; bits < count_assignments(remaining); ++bits) {
    ModelStore model = make_model(mgr, remaining, bits);
    if (!holds(mgr, elimination.assertions, model)) continue;
    const std::string given = describe(model, remaining);
    const Terms forms = get_values(elimination.kept, model);
    extend(mgr, elimination.trail, model);
    if (!holds(mgr, assertions, model)) return "the model" + given + " becomes" + describe(model, originals);
    if (get_values(kept, model) != forms)
      return "the model" + given + " becomes" + describe(model, originals) + ", and kept terms change";
  }
  return {};
}

}  // namespace lumo::test
