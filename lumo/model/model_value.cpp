#include "lumo/model/model_value.h"

namespace lumo {

void define_values(ModelStore& model, std::span<const ModelValue> values)
{
  ModelStore::DefinitionStack definitions;
  for (const ModelValue& value : values)
    definitions.emplace(value.constant, value.value, true);
  model.replay(definitions);
}

}  // namespace lumo
