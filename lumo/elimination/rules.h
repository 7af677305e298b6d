#ifndef LUMO_ELIMINATION_RULES_H
#define LUMO_ELIMINATION_RULES_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "lumo/terms/kind.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

/// Which arguments of an application must be free so that a fresh constant can replace it.
enum class FreeNeed : std::uint8_t
{
  kNever,     ///< the application always stays
  kOne,       ///< any one
  kAll,       ///< all
  kAllChain,  ///< all; in nested applications of the operator, any two, by regrouping
  kTwo,       ///< two of three
  kGuarded,   ///< any one, together with a guard on the other argument; without a guard if both are free
};

/// A rewriting of applications to one free argument and a numeral.
enum class NumeralRewrite : std::uint8_t
{
  kNone,
  kShift,   ///< a shift by a numeral becomes the bits that remain of the free argument, and padding
  kFactor,  ///< an odd factor is invertible; an even factor becomes an odd one and a shift
};

/// The rule for the applications of one operator.
struct EliminationRule
{
  Kind kind;
  FreeNeed need;
  NumeralRewrite rewrite = NumeralRewrite::kNone;
};

/// The rules of `eliminate`, in the order of `Kind`. An application is eliminated only where the operator's
/// calculator solves every value that the application may be given.
inline constexpr std::array<EliminationRule, kNumOperators> kEliminationRules = {{
    {Kind::kNot, FreeNeed::kOne},
    {Kind::kAnd, FreeNeed::kAllChain},
    {Kind::kOr, FreeNeed::kAllChain},
    {Kind::kIff, FreeNeed::kOne},
    {Kind::kIte, FreeNeed::kTwo},
    {Kind::kEq, FreeNeed::kOne},
    {Kind::kBvNot, FreeNeed::kOne},
    {Kind::kBvNeg, FreeNeed::kOne},
    {Kind::kBvRotateLeft, FreeNeed::kOne},
    {Kind::kBvRotateRight, FreeNeed::kOne},
    {Kind::kBvAnd, FreeNeed::kAllChain},
    {Kind::kBvOr, FreeNeed::kAllChain},
    {Kind::kBvXor, FreeNeed::kOne},
    {Kind::kBvConcat, FreeNeed::kAll},
    {Kind::kBvExtract, FreeNeed::kOne},
    {Kind::kBvZeroExtend, FreeNeed::kNever},
    {Kind::kBvSignExtend, FreeNeed::kNever},
    {Kind::kBvLsl, FreeNeed::kAll, NumeralRewrite::kShift},
    {Kind::kBvLsr, FreeNeed::kAll, NumeralRewrite::kShift},
    {Kind::kBvAsr, FreeNeed::kAll, NumeralRewrite::kShift},
    {Kind::kBvAdd, FreeNeed::kOne},
    {Kind::kBvSub, FreeNeed::kOne},
    {Kind::kBvMul, FreeNeed::kAllChain, NumeralRewrite::kFactor},
    {Kind::kBvUdiv, FreeNeed::kAll},
    {Kind::kBvSdiv, FreeNeed::kAll},
    {Kind::kBvUrem, FreeNeed::kNever},
    {Kind::kBvSrem, FreeNeed::kNever},
    {Kind::kBvUlt, FreeNeed::kGuarded},
    {Kind::kBvUle, FreeNeed::kGuarded},
    {Kind::kBvSlt, FreeNeed::kGuarded},
    {Kind::kBvSle, FreeNeed::kGuarded},
    {Kind::kBvComp, FreeNeed::kOne},
}};

namespace detail {

constexpr bool rules_are_complete()
{
  for (std::size_t i = 0; i < kNumOperators; ++i) {
    if (kEliminationRules[i].kind != static_cast<Kind>(i)) return false;
  }
  return true;
}

}  // namespace detail

static_assert(detail::rules_are_complete(),
              "kEliminationRules has one row for each operator, in the order of Kind");

/// The rule of an operator.
[[nodiscard]] constexpr const EliminationRule& get_elimination_rule(Kind kind)
{
  return kEliminationRules[static_cast<std::size_t>(kind)];
}

}  // namespace lumo

#pragma GCC visibility pop

#endif
