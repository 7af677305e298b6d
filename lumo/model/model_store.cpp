#include "lumo/model/model_store.h"

#include <string>
#include <utility>

#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/fold.h"

namespace lumo {

namespace {

/// Gives access to the container of a stack.
struct StackAccess : ModelStore::DefinitionStack
{
  static const container_type& get_definitions(const ModelStore::DefinitionStack& stack)
  {
    return stack.*&StackAccess::c;
  }
};

/// The number as a value of the sort.
QNumber fit(const QNumber& number, const DataType* sort)
{
  if (!number.is_int()) {
    throw Exception("a model was given the number " + number.to_string() + ", but an integer was expected");
  }
  if (!sort->is_bool()) return BVNumber::reduce(number, sort->get_width());
  if (number == QNumber(0) || number == QNumber(1)) return number;
  throw Exception("a Boolean was given the number " + number.to_string() + ", but 0 or 1 was expected");
}

}  // namespace

void ModelStore::check_own_term(const Term* t) const
{
  if (t == nullptr) throw Exception("a model was given a null pointer, but a term was expected");
  if (t->get_sort()->get_manager() != mgr_) {
    throw Exception(
        "a model was given a term of another term manager, but a term of its own one was expected");
  }
}

void ModelStore::check_definition(const ModelDefinition& definition) const
{
  check_own_term(definition.term);
  const DataType* expected = definition.term->get_sort();
  // Terms of one sort have one manager.
  if (definition.value != nullptr && definition.value->get_sort() == expected) [[likely]]
    return;
  check_own_term(definition.value);
  const DataType* found = definition.value->get_sort();
  throw Exception("the value of " + definition.term->get_symbol()->get_name() + " has sort " +
                  found->to_string() + ", but " + expected->to_string() + " was expected");
}

// --------------------------------------------------------------------------------------------------------
// Definitions

void ModelStore::replay(DefinitionStack& defs)
{
  for (; !defs.empty(); defs.pop()) {
    check_definition(defs.top());
    take(defs.top());
  }
}

void ModelStore::replay_keeping(const DefinitionStack& defs)
{
  const std::vector<ModelDefinition>& definitions = StackAccess::get_definitions(defs);
  for (std::size_t i = definitions.size(); i-- > 0;) {
    check_definition(definitions[i]);
    take(definitions[i]);
  }
}

void ModelStore::set_value(const Term* t, const Term* value)
{
  const ModelDefinition definition(t, value, true);
  check_definition(definition);
  take(definition);
}

void ModelStore::take(const ModelDefinition& definition)
{
  const auto [term, value, is_in_force] = definition;
  if (!is_in_force) return;
  // Most values are numerals; they need no entry in the evaluator's results.
  if (const QNumber* number = find_value_number(*mgr_, value); number != nullptr) {
    define(term, *number, value);
  } else {
    define(term, evaluator_.evaluate(value), nullptr);
  }
}

void ModelStore::set_value(const Term* t, const QNumber& number)
{
  check_own_term(t);
  define(t, fit(number, t->get_sort()), nullptr);
}

void ModelStore::define(const Term* t, QNumber number, const Term* value)
{
  if (is_operator(t->get_symbol()->get_kind())) {
    if (!checker_.has_value()) checker_ = evaluator_;  // which has only definitions of constants so far
  } else if (checker_.has_value()) {
    checker_->set_value(t, number, value);
  }
  evaluator_.set_value(t, std::move(number), value);
}

void ModelStore::unset_value(const Term* t)
{
  check_own_term(t);
  evaluator_.unset_value(t);
  if (checker_.has_value()) checker_->unset_value(t);
}

bool ModelStore::has_value(const Term* t) const
{
  check_own_term(t);
  return evaluator_.has_value(t);
}

void ModelStore::clear()
{
  evaluator_ = Evaluator(mgr_);
  checker_.reset();
}

// --------------------------------------------------------------------------------------------------------
// Values

const Term* ModelStore::get_value(const Term* t)
{
  check_own_term(t);
  return is_value(*mgr_, t) ? t : evaluator_.evaluate_to_term(*mgr_, t);
}

QNumber ModelStore::get_number(const Term* t) const
{
  check_own_term(t);
  return evaluator_.read(t);
}

// --------------------------------------------------------------------------------------------------------
// Checks

bool ModelStore::holds(const Term* t)
{
  check_own_term(t);
  if (!t->get_sort()->is_bool()) {
    throw Exception("a model was asked whether a term of sort " + t->get_sort()->to_string() +
                    " holds, but a term of sort Bool was expected");
  }
  return get_checker().evaluate(t).sign() != 0;
}

const Term* ModelStore::find_contradicted()
{
  const Term* contradicted = nullptr;
  evaluator_.for_each_given([&](const Evaluator::Given& given) {
    if (contradicted != nullptr || !is_operator(given.term->get_symbol()->get_kind())) return;
    if (get_checker().evaluate(given.term) != given.number) contradicted = given.term;
  });
  return contradicted;
}

}  // namespace lumo
