#include "lumo/elimination/extend.h"

#include <array>

#include "lumo/calculators/calculator_table.h"
#include "lumo/elimination/order_atom.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/fold.h"

namespace lumo {

namespace {

/// Whether exactly one argument is free and the other one leaves it no choice; then truth is what the atom is.
bool is_decided(const TermManager& mgr, const Step& step, const std::array<const Term*, kMaxArity>& args,
                bool& truth)
{
  const Symbol* s = step.application->get_symbol();
  if (!is_order(s->get_kind()) || step.free.count() != 1) return false;
  const Symbol* other = args[step.free[0] ? 1 : 0]->get_symbol();
  const OrderLimit limit =
      get_order_limit(s->get_kind(), step.free[0], other->get_output_type()->get_width());
  QNumber number;
  mgr.is_number(other, &number);
  truth = limit.truth;
  return number == limit.bound;
}

void extend_by(TermManager& mgr, const Step& step, ModelStore& model, ModelStore::DefinitionStack& defs)
{
  const Symbol* s = step.application->get_symbol();
  const std::size_t num_args = step.application->get_num_args();
  std::array<const Term*, kMaxArity> args{};
  bool is_unchanged = true;
  for (std::size_t i = 0; i < num_args; ++i) {
    const Term* arg = step.application->get_arg(i);
    args[i] = step.free[i] || is_value(mgr, arg) ? arg : model.get_value(arg);
    is_unchanged = is_unchanged && args[i] == arg;
  }
  const Term* value = model.get_value(step.constant);
  // Such an atom was eliminated together with a guard, beside which the constant's value does not count.
  if (bool truth = false; is_decided(mgr, step, args, truth))
    value = truth ? mgr.make_true() : mgr.make_false();

  adhoccalculator::AdHocCalculator* calculator = find_calculator(mgr, s);
  if (calculator == nullptr) throw Exception("an elimination of " + s->get_name() + " cannot be taken back");
  const Term* t = is_unchanged ? step.application : mgr.make_term(s, args.data(), num_args);
  (*calculator)(&mgr, t, value, defs);
  model.replay(defs);
}

}  // namespace

void extend(TermManager& mgr, const Trail& trail, ModelStore& model)
{
  ModelStore::DefinitionStack defs;
  for (const Term* fact : trail.facts)
    defs.emplace(fact, mgr.make_true(), true);
  model.replay(defs);
  for (std::size_t i = trail.steps.size(); i-- > 0;)
    extend_by(mgr, trail.steps[i], model, defs);
}

std::size_t find_violated(TermManager& mgr, std::span<const Term* const> assertions, ModelStore& model)
{
  for (std::size_t i = 0; i < assertions.size(); ++i) {
    if (model.get_value(assertions[i]) != mgr.make_true()) return i;
  }
  return assertions.size();
}

}  // namespace lumo
