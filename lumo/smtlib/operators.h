#ifndef LUMO_SMTLIB_OPERATORS_H
#define LUMO_SMTLIB_OPERATORS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

using Arguments = std::span<const Term* const>;

/// An index of an operator in a script.
struct Index
{
  std::string_view digits;
  unsigned long value;  ///< the largest one if the digits do not fit
};

/// The indices of an indexed operator in their order; unused ones are 0.
using Indices = std::array<Index, 2>;

/// The argument sorts of an operator of the language.
enum class Signature : std::uint8_t
{
  kBools,
  kBitVectors,         ///< of any widths
  kUniformBitVectors,  ///< of one width
  kAlike,              ///< of one sort, which may be any sort
  kIte,                ///< Bool and two of one sort
};

/// An operator of SMT-LIB 2. Scripts may apply more operators, and to more arguments, than the
/// term layer has; `build` expresses each by those.
struct Operator
{
  std::string_view name;
  Signature signature;
  std::uint8_t num_indices;
  bool takes_any_index;  ///< whether an index may exceed a word
  std::size_t min_args;
  std::size_t max_args;
  /// Builds the application. Precondition: the arguments fit the signature. Throws an `Exception` if an index does
  /// not fit.
  const Term* (*build)(TermManager& mgr, const Indices& indices, Arguments args);
};

/// All operators, without the constants true and false.
[[nodiscard]] std::span<const Operator> list_operators();
/// The operator of that name, or null.
[[nodiscard]] const Operator* find_operator(std::string_view name);

/// Why an operator refuses some arguments.
struct Misfit
{
  std::size_t argument;  ///< the index of the wrong argument, or the number of arguments if that is wrong
  std::string sentence;  ///< empty if all fit
};

/// Whether the arguments fit the operator's signature.
[[nodiscard]] bool fits(TermManager& mgr, const Operator& op, Arguments args);
/// Returns what does not fit.
[[nodiscard]] Misfit find_misfit(TermManager& mgr, const Operator& op, Arguments args);

}  // namespace lumo::smtlib

#endif
