#ifndef LUMO_TESTS_CALCULATORS_DEFINITION_H
#define LUMO_TESTS_CALCULATORS_DEFINITION_H

#include "lumo/terms/term.h"

namespace lumo::test {

/// A definition that a calculator pushes, without the flag.
struct Definition
{
  const Term* term;
  const Term* value;

  friend bool operator==(const Definition&, const Definition&) = default;
};

}  // namespace lumo::test

#endif
