#ifndef LUMO_TESTS_CALCULATORS_EXACT_REFERENCE_H
#define LUMO_TESTS_CALCULATORS_EXACT_REFERENCE_H

#include <array>
#include <string>
#include <vector>

#include "lumo/terms/kind.h"
#include "tests/support/gmp_number.h"

// The contract of the calculators written once more, for any width and also for ill-sorted terms. It uses only
// GMP's integers and texts, so it can judge calculators on any term layer.
//
// A text has everything that distinguishes terms: a numeral is its value in hexadecimal digits, a colon and its
// width; an application of an operator is its name, its three parameters and its arguments, as in
// `(bvadd 8 0 0; x8 5:8)`; true, false and declared constants are their names.

namespace lumo::test {

/// The facts about a term that a calculator can query.
struct Operand
{
  enum class Sort
  {
    kNumeral,
    kConstant,
    kCompound,
    kTrue,
    kFalse
  };

  Sort sort;
  std::string text;
  std::string symbol_name;  ///< for messages
  unsigned long width;      ///< 0 for Bool
  Integer number;           ///< of a numeral
};

/// A call of the calculator of one operator.
struct ExactCall
{
  Kind calculator;
  /// The parameters of t's operator, in the order of its factory, if it is the calculator's operator; otherwise zeros
  std::array<unsigned long, kMaxArity> parameters;
  unsigned long width;  ///< of t's sort, 0 for Bool
  std::vector<Operand> args;
  Operand value;
};

/// The expected result of a call.
struct ExactOutcome
{
  std::vector<std::string> definitions;  ///< `term := value`, in the order of the pushes
  std::string message;                   ///< the text of the refusal; empty if the case is solved
  bool is_missing_constant = false;      ///< the refusal is a plain `Exception`
  /// Whether a term layer may refuse something in this call: a functor applied to terms of other widths than its
  /// symbol takes, or anything of width 0. The definitions hold for a layer that does not refuse.
  bool is_ill_typed = false;
};

[[nodiscard]] ExactOutcome expect_exactly(const ExactCall& call);

/// The text of the numeral n modulo 2^w
[[nodiscard]] std::string print_numeral(const Integer& n, unsigned long w);
/// The text of an application
[[nodiscard]] std::string print_application(Kind kind, const std::array<unsigned long, kMaxArity>& parameters,
                                            const std::vector<std::string>& args);
/// A numeral as an operand
[[nodiscard]] Operand make_numeral_operand(const Integer& n, unsigned long w);

}  // namespace lumo::test

#endif
