#ifndef LUMO_CALCULATORS_SOLVER_CONSTANTS_H
#define LUMO_CALCULATORS_SOLVER_CONSTANTS_H

#include <cstdint>

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

// Constants by which solvers name truth values, literals and heap positions. The module only declares them and does
// not use them. No public header includes this header, so the names do not conflict with a user's macros.

/// Truth values of a partial assignment, one byte each
inline constexpr std::int8_t l_True = 1;
inline constexpr std::int8_t l_False = -1;
inline constexpr std::int8_t l_Undef = 0;

/// Literals of solvers
namespace dpll {

/// Values that are not literals
inline constexpr std::int32_t lit_Undef = -2;
inline constexpr std::int32_t lit_Error = -1;

}  // namespace dpll

/// The value that is not a theory literal
inline constexpr std::int64_t tlit_Undef = 0;

/// Heaps of solvers
class Heap
{
 public:
  /// The position of an element that is not in the heap
  static constexpr std::int64_t NO_IDX = -1;
};

}  // namespace lumo

#pragma GCC visibility pop

#endif
