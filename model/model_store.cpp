#include "model/model_store.h"

#include "terms/exception.h"
#include "terms/fold.h"

namespace lumo {

namespace {

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
    check_sorts(definition);
    if (definition.flag) evaluator_.set_value(definition.term, evaluator_.evaluate(definition.value));
  }
}

const Term* ModelStore::get_value(const Term* t)
{
  return make_value(*mgr_, evaluator_.evaluate(t), t->get_symbol()->get_output_type());
}

}  // namespace lumo
