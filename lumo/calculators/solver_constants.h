#ifndef LUMO_CALCULATORS_SOLVER_CONSTANTS_H
#define LUMO_CALCULATORS_SOLVER_CONSTANTS_H

#include <cstdint>

namespace lumo {

// Constants by which solvers that include the calculators name truth values, literals and heap positions. The
// calculators themselves use none of them.

/// Truth values of a partial assignment, one byte each
inline constexpr std::int8_t l_True = 1;
inline constexpr std::int8_t l_False = -1;
inline constexpr std::int8_t l_Undef = 0;

/// What solvers say of literals.
namespace dpll {

/// Literals that are none
inline constexpr std::int32_t lit_Undef = -2;
inline constexpr std::int32_t lit_Error = -1;

}  // namespace dpll

/// The theory literal that is none
inline constexpr std::int64_t tlit_Undef = 0;

/// What solvers say of their heaps.
class Heap
{
 public:
  /// The position of what is not in a heap
  static constexpr std::int64_t NO_IDX = -1;
};

}  // namespace lumo

#endif
