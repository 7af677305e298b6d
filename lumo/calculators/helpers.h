#ifndef LUMO_CALCULATORS_HELPERS_H
#define LUMO_CALCULATORS_HELPERS_H

// What the calculators share among themselves. Not part of the library's interface: every source that
// includes this has its own copy.

#include <utility>

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/numbers/bvnumber.h"

namespace lumo::adhoccalculator {

namespace {  // NOLINT(google-build-namespaces): private to each source of the module by design

/// Pushes {term, value, true}.
[[maybe_unused]] inline void push_definition(ModelStore::DefinitionStack& defs, const Term* term,
                                             const Term* value)
{
  defs.push(ModelStore::ModelDefinition(term, value, true));
}

/// The width of a term's sort, 0 if it is no bit-vector.
[[maybe_unused]] inline unsigned long read_width(const TermManager* mgr, const Term* term)
{
  unsigned long w = 0;
  mgr->is_bv_type(term->get_symbol()->get_output_type(), &w);
  return w;
}

inline constinit const QNumber kZeroNumber;

/// The number of a numeral, 0 for any other term; it lives as long as the manager.
[[maybe_unused]] inline const QNumber& read_number(const TermManager* mgr, const Term* term)
{
  const QNumber* number = mgr->find_number(term->get_symbol());
  return number != nullptr ? *number : kZeroNumber;
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
  const bool a_is_number = mgr->is_number(a->get_symbol(), nullptr);
  const bool b_is_number = mgr->is_number(b->get_symbol(), nullptr);
  return {a, b, a_is_number, b_is_number};
}

/// Puts an operand that is a declared constant first; returns whether it exchanged a and b for that. If both
/// are constants, a stays.
///
/// If neither is one, throws an `Exception` that names the symbol of the second operand, and leaves the two
/// exchanged. It is deliberately no `AdHocCalculator::error`, so a handler for that does not see it; the
/// observer sees the message twice, first without the name.
[[maybe_unused]] inline bool find_free_constant(TermManager* mgr, const Term*& a, const Term*& b)
{
  bool swapped = false;
  if (!mgr->is_constant(a->get_symbol())) {
    std::swap(a, b);
    swapped = true;
  }
  if (mgr->is_constant(a->get_symbol())) return swapped;

  AdHocCalculator::error e("expected constant, but ");
  e << a->get_symbol()->get_name() << " found instead";
  throw Exception(e);
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

/// For 0 < a < m an x in [0, m) with a * x = gcd(a, m) modulo m: the inverse of a if the two have no common
/// factor, which is not tested. 0 for a = 0.
///
/// An odd number has one inverse only modulo a power of two, so there a faster way to it gives the same.
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
