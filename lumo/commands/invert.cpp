#include "lumo/commands/invert.h"

#include <string>

#include "lumo/calculators/calculator_table.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/terms/fold.h"

namespace lumo::commands {

namespace {

using Pushed = std::vector<ModelStore::ModelDefinition>;

bool is_application(const Term* t) { return t->get_num_args() != 0; }

std::string describe(const Term* t) { return smtlib::make_excerpt(t->get_symbol()->get_name()); }

/// The pushed definitions of constants, as a stack in the same order.
ModelStore::DefinitionStack select_constants(const TermManager& mgr, const Pushed& pushed)
{
  ModelStore::DefinitionStack stack;
  for (const ModelStore::ModelDefinition& definition : pushed) {
    if (mgr.is_constant(definition.term->get_symbol())) stack.push(definition);
  }
  return stack;
}

}  // namespace

Request make_request(TermManager& mgr, const Term* assertion)
{
  const Symbol* s = assertion->get_symbol();
  if (!is_application(assertion)) {
    throw Exception("this is the " + std::string(mgr.is_constant(s) ? "constant " : "literal ") +
                    describe(assertion) + " alone, but an application of an operator was expected");
  }
  if (mgr.is_eq(s) || mgr.is_iff(s)) {
    const Term* lhs = assertion->get_arg(0);
    const Term* rhs = assertion->get_arg(1);
    if (is_application(lhs) && is_value(mgr, rhs)) return {lhs, rhs};
    if (is_application(rhs) && is_value(mgr, lhs)) return {rhs, lhs};
  }
  if (mgr.is_not(s) && is_application(assertion->get_arg(0)))
    return {assertion->get_arg(0), mgr.make_false()};
  return {assertion, mgr.make_true()};
}

std::vector<ModelValue> Inverter::solve(const Request& request, std::size_t number)
{
  const Pushed pushed = calculate(request);
  try {
    assign(pushed);
    check_compound(request.term, pushed);
    check_value(request);
    return take_new(pushed, number);
  } catch (...) {
    withdraw(pushed);
    throw;
  }
}

/// The calculator's definitions in the order in which it pushes them.
Pushed Inverter::calculate(const Request& request)
{
  adhoccalculator::AdHocCalculator* calculator = find_calculator(mgr_, request.term->get_symbol());
  if (calculator == nullptr) throw Exception("no calculator serves this operator");
  ModelStore::DefinitionStack stack;
  (*calculator)(&mgr_, request.term, request.value, stack);
  Pushed pushed;
  for (; !stack.empty(); stack.pop())
    pushed.insert(pushed.begin(), stack.top());
  return pushed;
}

void Inverter::assign(const Pushed& pushed)
{
  ModelStore::DefinitionStack stack = select_constants(mgr_, pushed);
  model_.replay(stack);
}

/// Resets constants to the values of earlier requests, or to the value of undefined constants.
void Inverter::withdraw(const Pushed& pushed)
{
  Pushed earlier;
  for (const ModelStore::ModelDefinition& definition : pushed) {
    if (!mgr_.is_constant(definition.term->get_symbol())) continue;
    const auto known = known_.find(definition.term);
    const DataType* sort = definition.term->get_symbol()->get_output_type();
    const Term* value = known != known_.end() ? known->second.value : make_value(mgr_, QNumber(), sort);
    earlier.emplace_back(definition.term, value, true);
  }
  assign(earlier);
}

/// A value for a compound argument cannot be printed as a definition of a constant. Drop
/// it if the argument is a branch of an if-then-else that is not selected; otherwise refuse.
void Inverter::check_compound(const Term* t, const Pushed& pushed)
{
  const Term* selected = nullptr;
  for (const ModelStore::ModelDefinition& definition : pushed) {
    if (!is_application(definition.term)) continue;
    if (mgr_.is_ite(t->get_symbol()) && definition.term != t->get_arg(0)) {
      if (selected == nullptr) selected = find_selected_branch(t);
      if (definition.term != selected) continue;
    }
    throw Exception("an argument that is itself an application of " + describe(definition.term) +
                    " needs a value, but only constants can be defined");
  }
}

void Inverter::check_value(const Request& request)
{
  // A branch that is not selected may be large, and its value does not matter.
  const bool is_ite = mgr_.is_ite(request.term->get_symbol());
  const Term* found = model_.get_value(is_ite ? find_selected_branch(request.term) : request.term);
  if (found == request.value) return;
  throw Exception("the values that the calculator gives make the application " + describe(found) + ", but " +
                  describe(request.value) + " was expected");
}

/// Precondition: the condition is a constant or a literal, so its value is known.
const Term* Inverter::find_selected_branch(const Term* t)
{
  return t->get_arg(model_.get_value(t->get_arg(0)) == mgr_.make_true() ? 1 : 2);
}

std::vector<ModelValue> Inverter::take_new(const Pushed& pushed, std::size_t number)
{
  std::vector<ModelValue> fresh;
  for (const ModelStore::ModelDefinition& definition : pushed) {
    const Term* constant = definition.term;
    if (!mgr_.is_constant(constant->get_symbol())) continue;
    const Term* value = model_.get_value(constant);
    const auto known = known_.find(constant);
    if (known == known_.end()) {
      fresh.push_back({constant, value});
    } else if (known->second.value != value) {
      throw Exception("the constant " + describe(constant) + " needs the value " + describe(value) +
                      ", but assertion " + std::to_string(known->second.number) + " has given it " +
                      describe(known->second.value));
    }
  }
  std::vector<ModelValue> result;
  for (const ModelValue& definition : fresh) {
    if (known_.try_emplace(definition.constant, Known{definition.value, number}).second)
      result.push_back(definition);
  }
  return result;
}

}  // namespace lumo::commands
