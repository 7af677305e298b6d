#ifndef LUMO_TESTS_CALCULATORS_OWN_TERMS_MODEL_STORE_H
#define LUMO_TESTS_CALCULATORS_OWN_TERMS_MODEL_STORE_H

#include "lumo/terms/term_manager.h"

namespace lumo {

/// The model store of a solver with its own terms: the calculators only need its record of a definition.
class ModelStore
{
 public:
  struct ModelDefinition
  {
    ModelDefinition(const Term* defined_term, const Term* defining_value, bool in_force)
        : term(defined_term), value(defining_value), flag(in_force)
    {}

    const Term* term;
    const Term* value;
    bool flag;
  };
};

}  // namespace lumo

#endif
