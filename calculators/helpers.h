#ifndef LUMO_CALCULATORS_HELPERS_H
#define LUMO_CALCULATORS_HELPERS_H

// What the calculators share among themselves. Not part of the library's interface: every source that
// includes this has its own copy.

#include <utility>

#include "calculators/adhoccalculators.h"
#include "numbers/bvnumber.h"

namespace lumo::adhoccalculator {

namespace {  // NOLINT(google-build-namespaces): private to each source of the module by design

/// Pushes {term, value, true}.
[[maybe_unused]] inline void push_definition(ModelStore::DefinitionStack& defs, const Term* term,
                                             const Term* value)
{
  defs.push(ModelStore::ModelDefinition(term, value, true));
}

/// Puts an operand that is a declared constant first; returns whether it exchanged a and b for that. If both
/// are constants, a stays.
///
/// If neither is one, throws an `Exception` that names the symbol of the second operand, and leaves the two
/// exchanged. It is deliberately no `AdHocCalculator::error`, so a handler for that does not see it; the
/// observer sees the message twice, first without the name.
[[maybe_unused]] inline bool find_free_constant(TermManager* mgr, const Term*& a, const Term*& b)
{
  bool swapped = false;
  if (!mgr->is_constant(a->get_symbol())) {
    std::swap(a, b);
    swapped = true;
  }
  if (mgr->is_constant(a->get_symbol())) return swapped;

  AdHocCalculator::error e("expected constant, but ");
  e << a->get_symbol()->get_name() << " found instead";
  throw Exception(e);
}

/// q + 1
[[maybe_unused]] inline QNumber plus_one(const QNumber& q)
{
  return q + QNumber(1);
}

/// q - 1
[[maybe_unused]] inline QNumber minus_one(const QNumber& q)
{
  return q - QNumber(1);
}

}  // namespace

}  // namespace lumo::adhoccalculator

#endif
