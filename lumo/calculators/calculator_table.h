#ifndef LUMO_CALCULATORS_CALCULATOR_TABLE_H
#define LUMO_CALCULATORS_CALCULATOR_TABLE_H

#include "lumo/calculators/adhoccalculators.h"

namespace lumo {

/// The calculator of s's operator, which the library owns and shares among all callers; null if no calculator
/// serves s. s is a symbol of mgr.
[[nodiscard]] adhoccalculator::AdHocCalculator* find_calculator(const TermManager& mgr, const Symbol* s);

namespace adhoccalculator {

using lumo::find_calculator;

}  // namespace adhoccalculator

}  // namespace lumo

#endif
