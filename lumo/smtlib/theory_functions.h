#ifndef LUMO_SMTLIB_THEORY_FUNCTIONS_H
#define LUMO_SMTLIB_THEORY_FUNCTIONS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "lumo/smtlib/foreign_terms.h"

namespace lumo::smtlib {

/// How the sort of an application follows from its head and its arguments.
enum class ResultRule : std::uint8_t
{
  kBool,
  kInt,
  kReal,
  kString,
  kRegularLanguage,
  kRoundingMode,
  kArithmetic,    ///< Real if an argument is Real, otherwise Int
  kFirst,         ///< that of the first argument
  kSecond,        ///< that of the second argument
  kSelect,        ///< the element sort of the array
  kStore,         ///< that of the array
  kBits,          ///< bit-vectors of as many bits as the index says
  kFloat,         ///< floating-point numbers with the widths of the indices
  kFloatOfParts,  ///< of sign, exponent and significand
  kBitsOfFloat,   ///< as many bits as the floating-point number has
};

/// A function of the standard's theories that the term layer does not have. The members are in the order of the table.
struct TheoryFunction  // NOLINT(clang-analyzer-optin.performance.Padding)
{
  std::string_view name;
  ResultRule rule;
  std::size_t num_indices;
  std::size_t min_args;
  std::size_t max_args;
  ForeignRole role = ForeignRole::kOther;
};

/// The function of that name, or null.
[[nodiscard]] const TheoryFunction* find_theory_function(std::string_view name);

/// The name of the function that is nearest to this one, and its distance; kNotNear if none is near.
[[nodiscard]] std::size_t find_nearest_theory_function(std::string_view name, std::string_view& nearest);

/// The sort of an application; null if the arguments are not those of the function.
[[nodiscard]] const DataType* find_result_sort(TermManager& mgr, ForeignSortTable& sorts,
                                               const TheoryFunction& function,
                                               std::span<const unsigned long> indices, Sorts args);

/// Whether a term of one sort can stand where the other one is expected: they are the same, or Int for Real.
[[nodiscard]] bool can_stand_for(const DataType* found, const DataType* expected);

/// The canonical spelling of a theory's sort without arguments, such as `Int`; empty if no theory has it.
[[nodiscard]] std::string_view find_theory_sort(std::string_view name);

}  // namespace lumo::smtlib

#endif
