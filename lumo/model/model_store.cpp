#include "lumo/model/model_store.h"

#include <utility>

#include "lumo/terms/exception.h"
#include "lumo/terms/fold.h"

namespace lumo {

namespace {

void check_own_term(const TermManager& mgr, const Term* t)
{
  if (t == nullptr) throw Exception("a model was given a null pointer, but a term was expected");
  if (t->get_symbol()->get_output_type()->get_manager() != &mgr) {
    throw Exception(
        "a model was given a term of another term manager, but a term of its own one was expected");
  }
}

void check_sorts(const ModelStore::ModelDefinition& definition)
{
  const DataType* expected = definition.term->get_symbol()->get_output_type();
  const DataType* found = definition.value->get_symbol()->get_output_type();
  if (found == expected) return;
  throw Exception("the value of " + definition.term->get_symbol()->get_name() + " has sort " +
                  found->to_string() + ", but " + expected->to_string() + " was expected");
}

}  // namespace

void ModelStore::replay(DefinitionStack& defs)
{
  for (; !defs.empty(); defs.pop()) {
    const ModelDefinition& definition = defs.top();
    check_own_term(*mgr_, definition.term);
    check_own_term(*mgr_, definition.value);
    check_sorts(definition);
    if (!definition.flag) continue;
    // Most values are numerals; they need no place among the evaluator's results.
    QNumber number;
    if (!get_value_number(*mgr_, definition.value, number)) number = evaluator_.evaluate(definition.value);
    evaluator_.set_value(definition.term, std::move(number));
  }
}

const Term* ModelStore::get_value(const Term* t)
{
  check_own_term(*mgr_, t);
  return make_value(*mgr_, evaluator_.evaluate(t), t->get_symbol()->get_output_type());
}

}  // namespace lumo
