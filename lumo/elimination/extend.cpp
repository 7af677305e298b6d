#include "lumo/elimination/extend.h"

#include "lumo/calculators/calculator_table.h"
#include "lumo/elimination/extend_step.h"
#include "lumo/elimination/order_atom.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/local_application.h"

namespace lumo {

namespace {

/// The model checks the step's constant.
void check_application(const TermManager& mgr, const Term* t)
{
  if (t == nullptr) throw Exception("a step of a trail has a null pointer, but a term was expected");
  if (t->get_sort()->get_manager() != &mgr) {
    throw Exception(
        "a step of a trail has a term of another term manager, but a term of this one was expected");
  }
}

/// Whether exactly one argument is free and the other one is the bound that fixes the atom. If so, stores the
/// atom's value.
bool is_decided(const TermManager& mgr, const Step& step, const LocalApplication::Arguments& args,
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

}  // namespace

void check_manager(const TermManager& mgr, const ModelStore& model)
{
  if (model.get_manager() == &mgr) return;
  throw Exception("a model of another term manager was given, but one of this manager was expected");
}

void extend_by(TermManager& mgr, const Step& step, ModelStore& model, ModelStore::DefinitionStack& defs)
{
  check_application(mgr, step.application);
  const Symbol* s = step.application->get_symbol();
  LocalApplication::Arguments args{};
  for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
    const Term* arg = step.application->get_arg(i);
    args[i] = step.free[i] ? arg : model.get_value(arg);
  }
  const Term* value = model.get_value(step.constant);
  // Such an atom was eliminated with a guard, which makes the constant's value irrelevant here.
  if (bool truth = false; is_decided(mgr, step, args, truth))
    value = truth ? mgr.make_true() : mgr.make_false();

  adhoccalculator::AdHocCalculator* calculator = find_calculator(mgr, s);
  if (calculator == nullptr) throw Exception("an elimination of " + s->get_name() + " cannot be taken back");
  const LocalApplication t(s, args);
  (*calculator)(&mgr, &t, value, defs);
  model.replay(defs);
}

void extend(TermManager& mgr, const Trail& trail, ModelStore& model)
{
  check_manager(mgr, model);
  for (const Term* fact : trail.facts)
    model.set_value(fact, mgr.make_true());
  ModelStore::DefinitionStack defs;
  for (std::size_t i = trail.steps.size(); i-- > 0;)
    extend_by(mgr, trail.steps[i], model, defs);
}

std::size_t find_violated(TermManager& mgr, std::span<const Term* const> assertions, ModelStore& model)
{
  check_manager(mgr, model);
  for (std::size_t i = 0; i < assertions.size(); ++i) {
    if (!model.holds(assertions[i])) return i;
  }
  return assertions.size();
}

}  // namespace lumo
