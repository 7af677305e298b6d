#ifndef LUMO_MODEL_MODEL_VALUE_H
#define LUMO_MODEL_MODEL_VALUE_H

#include <span>

#include "lumo/model/model_store.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// A constant and its value: a numeral, true or false.
struct ModelValue
{
  const Term* constant;
  const Term* value;
};

/// Gives the values to the constants of a model. If two values are given to one constant, the first one counts.
/// Refuses what `ModelStore::set_value` refuses.
void define_values(ModelStore& model, std::span<const ModelValue> values);

}  // namespace lumo

#endif
