#ifndef LUMO_TESTS_PROOF_PROOF_ROWS_H
#define LUMO_TESTS_PROOF_PROOF_ROWS_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// The parameters of its operator for which a row of the table holds.
enum class Scope : std::uint8_t
{
  kEvery,
  kOneBit,   ///< operands of one bit; for an extension, by at least one bit more
  kWider,    ///< everything else
  kBools,    ///< if-then-else of Booleans
  kVectors,  ///< if-then-else of bit-vectors
};

enum class Standing : std::uint8_t
{
  kSound,    ///< the definitions give the application the value: to be proven
  kUnsound,  ///< they do not, by design: to be refuted
};

/// The behaviour of a calculator in one case, as texts that solvers can read.
///
/// An operand is a declared constant (x), a compound term (e) or a numeral, true or false (n); a shape has a
/// letter for each operand, and the row holds for each of its shapes. The texts are SMT-LIB 2 terms over
///
///     v                    the value that the application must take
///     x; a, b; c, a, b     the operands that are n: of a unary, of a binary operator, of ite
///     zero one ones least greatest
///                          the patterns 0, 1, 2^w - 1, 2^(w-1), 2^(w-1) - 1 of the operands' width w
///     wide, lsb            extraction: v extended to the operand's width, and the lowest bit
///     low, is_zero, is_one extensions: the low bits of v, and which of the two values it is
///     inverse, product     bvmul: any number, and its product with the numeral
struct ProofRow
{
  Kind kind;
  Scope scope;
  std::string_view shapes;  ///< separated by blanks
  std::string_view value;   ///< `v` for any, or the one value
  /// The condition under which the calculator solves the case, besides shapes and value; empty for none
  std::string_view condition;
  /// `operand := term; ...` in the order of the pushes, if the calculator computes with numbers. Empty if it
  /// builds terms: then it is called for a v that is a constant, and its own definitions are used.
  std::string_view definitions;
  Standing standing = Standing::kSound;
  /// A term that is first shown to equal the application for every `product`, and then to equal the value
  /// with a constant for `product`; empty if one step suffices.
  std::string_view middle = {};
};

[[nodiscard]] std::span<const ProofRow> get_proof_rows();

/// The widths of the operands that the row is proven at; 0 if their sort is Bool. The variable
/// LUMO_PROOF_WIDTHS=all selects more of them than the tests normally use.
[[nodiscard]] std::vector<unsigned long> get_proof_widths(const ProofRow& row);
/// The widths of every run as a text: `1 to 16, 31, ...`, or `Bool`
[[nodiscard]] std::string describe_proof_widths(const ProofRow& row);

/// Parameters of an operator for operands of width w: up to 8 bits all rotations by at most 2w and all
/// extractions, above a selection.
[[nodiscard]] std::vector<Parameters> choose_parameters(Kind kind, unsigned long w);
/// Whether the row applies to these parameters of its operator.
[[nodiscard]] bool is_in_scope(const ProofRow& row, const Parameters& parameters);

/// The words of a text, separated by spaces
[[nodiscard]] std::vector<std::string_view> split_words(std::string_view text);

}  // namespace lumo::test

#endif
