#ifndef LUMO_SMTLIB_DERIVED_OPERATORS_H
#define LUMO_SMTLIB_DERIVED_OPERATORS_H

#include "lumo/smtlib/operators.h"

namespace lumo::smtlib {

// Operators of the language that the term layer does not have, expressed by those that it has. Precondition: the
// arguments fit the operator's signature.

/// (=> a b c) is (=> a (=> b c)), and (=> a b) is (or (not a) b).
[[nodiscard]] const Term* imply(TermManager& mgr, const Indices& indices, Arguments args);
/// (= a b c) is (and (= a b) (= b c)).
[[nodiscard]] const Term* all_equal(TermManager& mgr, const Indices& indices, Arguments args);
/// (distinct a b) and (xor a b) are (not (= a b)).
[[nodiscard]] const Term* differ(TermManager& mgr, const Indices& indices, Arguments args);
/// (distinct a b c) is (and (and (not (= a b)) (not (= a c))) (not (= b c))).
[[nodiscard]] const Term* all_distinct(TermManager& mgr, const Indices& indices, Arguments args);

/// bvsmod, the signed remainder with the sign of the divisor: if the remainder r of bvsrem is not 0 and its sign is
/// not the divisor's, the result is r + b. For b = 0, r is a, and adding 0 does not change it.
[[nodiscard]] const Term* signed_modulo(TermManager& mgr, const Indices& indices, Arguments args);
/// (_ repeat k): the concatenation of k copies, by a logarithmic number of concatenations. An `Exception` if k is 0.
[[nodiscard]] const Term* repeat(TermManager& mgr, const Indices& indices, Arguments args);
/// (_ rotate_left k) and (_ rotate_right k): k is taken modulo the width.
[[nodiscard]] const Term* rotate_left(TermManager& mgr, const Indices& indices, Arguments args);
[[nodiscard]] const Term* rotate_right(TermManager& mgr, const Indices& indices, Arguments args);

// Whether the exact result of an operation does not fit the width of its operands, read as unsigned (u) or signed
// (s) numbers.

/// bvnego: -a fits unless a is the least number.
[[nodiscard]] const Term* negation_overflows(TermManager& mgr, const Indices& indices, Arguments args);
/// bvuaddo: the sum modulo 2^w is less than an operand.
[[nodiscard]] const Term* unsigned_sum_overflows(TermManager& mgr, const Indices& indices, Arguments args);
/// bvsaddo: both operands have the same sign, and the sum modulo 2^w has the other one.
[[nodiscard]] const Term* signed_sum_overflows(TermManager& mgr, const Indices& indices, Arguments args);
/// bvumulo: the high half of the product, computed with twice the width, is not 0.
[[nodiscard]] const Term* unsigned_product_overflows(TermManager& mgr, const Indices& indices,
                                                     Arguments args);
/// bvsmulo: the product, computed with twice the width, is not the sign extension of its low half.
[[nodiscard]] const Term* signed_product_overflows(TermManager& mgr, const Indices& indices, Arguments args);
/// bvusubo: the first operand is less than the second.
[[nodiscard]] const Term* unsigned_difference_overflows(TermManager& mgr, const Indices& indices,
                                                        Arguments args);
/// bvssubo: the operands have different signs, and the difference modulo 2^w does not have the first one's.
[[nodiscard]] const Term* signed_difference_overflows(TermManager& mgr, const Indices& indices,
                                                      Arguments args);
/// bvsdivo: the least number is divided by -1.
[[nodiscard]] const Term* signed_quotient_overflows(TermManager& mgr, const Indices& indices, Arguments args);

}  // namespace lumo::smtlib

#endif
