#ifndef LUMO_CALCULATORS_CALCULATOR_TABLE_H
#define LUMO_CALCULATORS_CALCULATOR_TABLE_H

#include "lumo/calculators/adhoccalculators.h"

namespace lumo {

/// The calculator of s's operator, or null if s is not an operator. The library owns it, and all callers share it.
/// s is a symbol of mgr.
[[nodiscard]] adhoccalculator::AdHocCalculator* find_calculator(const TermManager& mgr, const Symbol* s);

/// Does the same as the calculator of t's operator, but returns a refusal instead of throwing it: a refusal then
/// costs no more than a solution. Exceptions of the term layer still pass through. Throws an `Exception` if t is
/// not an application of an operator.
[[nodiscard]] adhoccalculator::Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                                     adhoccalculator::DefinitionStack& defs);

namespace adhoccalculator {

using lumo::find_calculator;

}  // namespace adhoccalculator

}  // namespace lumo

#endif
