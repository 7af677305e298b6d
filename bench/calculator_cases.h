#ifndef LUMO_BENCH_CALCULATOR_CASES_H
#define LUMO_BENCH_CALCULATOR_CASES_H

#include <span>

#include "lumo/terms/term_manager.h"

namespace lumo::bench {

/// A case that a calculator solves, or refuses immediately: an application, made for a width of at least 8.
struct CalculatorCase
{
  const char* name;  ///< operator/kinds of its arguments
  const Term* (*make)(TermManager& mgr, unsigned long w);
};

/// At least one of each operator, in the order of `Kind`.
[[nodiscard]] std::span<const CalculatorCase> get_calculator_cases();

/// A case that a calculator refuses for some values, and one of the same operator that it solves for these.
struct RefusedCase
{
  const char* name;  ///< operator_why
  const Term* (*make)(TermManager& mgr, unsigned long w);
  const Term* (*make_solved)(TermManager& mgr, unsigned long w);
};

/// Refusals that need more work than reading the arguments
[[nodiscard]] std::span<const RefusedCase> get_refused_cases();

/// The application of t's operator to values only
[[nodiscard]] const Term* apply_to_values(TermManager& mgr, const Term* t);

/// A pseudo-random pattern of a width; advances the state.
[[nodiscard]] QNumber draw_pattern(unsigned long w, unsigned long& state);
/// A word of at most 63 bits in the same way
[[nodiscard]] unsigned long draw_word(unsigned long& state);

}  // namespace lumo::bench

#endif
