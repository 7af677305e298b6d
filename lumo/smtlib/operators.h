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
/// The indices of an indexed operator in their order; unused ones are 0.
using Indices = std::array<unsigned long, 2>;

/// What sorts an operator of the language takes.
enum class Signature : std::uint8_t
{
  kBools,
  kBitVectors,         ///< of any widths
  kUniformBitVectors,  ///< of one width
  kAlike,              ///< of one sort, whichever
  kIte,                ///< Bool and two of one sort
};

/// An operator of SMT-LIB 2 as files spell it. Files may apply more of them, and to more arguments, than the
/// term layer has; `build` says what each means there.
struct Operator
{
  std::string_view name;
  Signature signature;
  std::size_t min_args;
  std::size_t max_args;
  const Term* (*build)(TermManager& mgr, const Indices& indices, Arguments args);
};

/// The operator of that name, or null.
[[nodiscard]] const Operator* find_operator(std::string_view name);

/// Why the operator does not take these arguments, in one sentence; empty if it does.
[[nodiscard]] std::string find_misfit(TermManager& mgr, const Operator& op, Arguments args);

}  // namespace lumo::smtlib

#endif
