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

/// An index of an operator as a script writes it.
struct Index
{
  std::string_view digits;
  unsigned long value;  ///< the largest one if the digits do not fit
};

/// The indices of an indexed operator in their order; unused ones are 0.
using Indices = std::array<Index, 2>;

/// What sorts an operator of the language takes.
enum class Signature : std::uint8_t
{
  kBools,
  kBitVectors,         ///< of any widths
  kUniformBitVectors,  ///< of one width
  kAlike,              ///< of one sort, whichever
  kIte,                ///< Bool and two of one sort
};

/// An operator of SMT-LIB 2 as scripts spell it. Scripts may apply more operators, and to more arguments, than the
/// term layer has; `build` says what each means there.
struct Operator
{
  std::string_view name;
  Signature signature;
  std::uint8_t num_indices;
  bool takes_any_index;  ///< whether an index may be longer than a word has bits
  std::size_t min_args;
  std::size_t max_args;
  /// Builds the application. The arguments fit the signature. An `Exception` says which index does not fit.
  const Term* (*build)(TermManager& mgr, const Indices& indices, Arguments args);
};

/// All operators that are not spelled like constants.
[[nodiscard]] std::span<const Operator> list_operators();
/// The operator of that name, or null.
[[nodiscard]] const Operator* find_operator(std::string_view name);

/// Why an operator does not take some arguments.
struct Misfit
{
  std::size_t argument;  ///< the place of the one that does not fit; their number if the number is wrong
  std::string sentence;  ///< empty if all fit
};

/// Whether the arguments fit the operator's signature.
[[nodiscard]] bool fits(TermManager& mgr, const Operator& op, Arguments args);
/// Says what does not fit.
[[nodiscard]] Misfit find_misfit(TermManager& mgr, const Operator& op, Arguments args);

}  // namespace lumo::smtlib

#endif
