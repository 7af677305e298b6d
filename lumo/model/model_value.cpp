#include "lumo/model/model_value.h"

namespace lumo {

void define_values(ModelStore& model, std::span<const ModelValue> values)
{
  for (std::size_t i = values.size(); i-- > 0;)
    model.set_value(values[i].constant, values[i].value);
}

}  // namespace lumo
