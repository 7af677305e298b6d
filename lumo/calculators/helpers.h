#ifndef LUMO_CALCULATORS_HELPERS_H
#define LUMO_CALCULATORS_HELPERS_H

// Helpers that the calculators share. Not part of the library's interface: every source that includes this header
// has its own copy.

#include <utility>

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/solver_constants.h"
#include "lumo/calculators/term_access.h"
#include "lumo/numbers/bvnumber.h"

namespace lumo::adhoccalculator {

namespace {  // NOLINT(google-build-namespaces): private to each source of the module by design

/// Pushes {term, value, true}.
[[maybe_unused]] inline void push_definition(DefinitionStack& defs, const Term* term, const Term* value)
{
  defs.push(ModelStore::ModelDefinition(term, value, true));
}

/// Throws the refusal, if there is one.
[[maybe_unused]] inline void raise_if_refused(const Refusal& refusal)
{
  if (refusal) [[unlikely]]
    refusal.raise();
}

/// The width of a term's sort, 0 if it is not a bit-vector.
[[maybe_unused]] inline unsigned long read_width(const TermManager* mgr, const Term* term)
{
  unsigned long w = 0;
  mgr->is_bv_type(term->get_symbol()->get_output_type(), &w);
  return w;
}

/// The first two arguments of an application, and which of them are numerals.
struct Operands
{
  const Term* a;
  const Term* b;
  bool a_is_number;
  bool b_is_number;
};

[[maybe_unused]] inline Operands read_operands(const TermManager* mgr, const Term* t)
{
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  const bool a_is_number = is_numeral(mgr, a);
  const bool b_is_number = is_numeral(mgr, b);
  return {a, b, a_is_number, b_is_number};
}

/// The result of `select_free_constant`: whether it found a constant, and whether it exchanged the operands.
struct Selection
{
  Refusal refusal;
  bool swapped;
};

/// Moves an operand that is a declared constant to the first place. If both are constants, a stays first.
///
/// If neither is a constant, the refusal names the symbol of the second operand, and the two stay exchanged.
[[maybe_unused]] inline Selection select_free_constant(const TermManager* mgr, const Term*& a, const Term*& b)
{
  bool swapped = false;
  if (!mgr->is_constant(a->get_symbol())) {
    std::swap(a, b);
    swapped = true;
  }
  if (mgr->is_constant(a->get_symbol())) return {Refusal(), swapped};
  return {Refusal::of_missing_constant(a->get_symbol()), swapped};
}

/// The same for callers that want an exception: returns whether it exchanged a and b, and throws the refusal.
///
/// The exception is a plain `Exception` and deliberately not an `AdHocCalculator::error`, so a handler for errors
/// does not catch it. An observer sees the message twice, first without the name.
[[maybe_unused]] inline bool find_free_constant(TermManager* mgr, const Term*& a, const Term*& b)
{
  const Selection selection = select_free_constant(mgr, a, b);
  raise_if_refused(selection.refusal);
  return selection.swapped;
}

/// q + 1
[[maybe_unused]] inline QNumber plus_one(const QNumber& q) { return q + QNumber(1); }

/// q - 1
[[maybe_unused]] inline QNumber minus_one(const QNumber& q) { return q - QNumber(1); }

/// `calculate_modular_inverse` for any a and m.
///
/// The extended Euclidean algorithm (D. E. Knuth, The Art of Computer Programming, vol. 2, section 4.5.2,
/// algorithm X) without the coefficients of m: r0 = a * x and r1 = a * s modulo m throughout.
[[maybe_unused]] inline QNumber calculate_inverse_by_euclid(const QNumber& a, const QNumber& m)
{
  QNumber r0(m);
  QNumber r1(a);
  QNumber x(0);
  QNumber s(1);
  QNumber q;
  while (r1.sign() != 0) {
    r0.divmod(r1, q, r0);
    r0.swap(r1);
    q *= s;
    x -= q;
    x.swap(s);
  }
  if (x.sign() < 0) x += m;
  return x;
}

/// For 0 < a < m, an x in [0, m) with a * x = gcd(a, m) modulo m: the inverse of a if the two have no common
/// factor, which is not checked. For a = 0, the result is 0.
///
/// The inverse of an odd number modulo a power of two is unique, so a faster algorithm gives the same result there.
[[maybe_unused]] inline QNumber calculate_modular_inverse(const QNumber& a, const QNumber& m)
{
  unsigned long w;
  if (BVNumber::is_bit_set(a, 0) && BVNumber::is_pow2(m, w) && w != 0) [[likely]]
    return BVNumber::invert_odd(a, w);
  return calculate_inverse_by_euclid(a, m);
}

}  // namespace

}  // namespace lumo::adhoccalculator

#endif
