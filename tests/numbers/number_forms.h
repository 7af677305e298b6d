#ifndef LUMO_TESTS_NUMBERS_NUMBER_FORMS_H
#define LUMO_TESTS_NUMBERS_NUMBER_FORMS_H

#include <array>
#include <climits>
#include <ostream>

#include "lumo/numbers/qnumber.h"
#include "tests/support/gmp_number.h"

namespace lumo::test {

/// How a number is stored.
enum class Form
{
  kSmall,
  kBig
};

inline constexpr std::array<Form, 2> kBothForms = {Form::kSmall, Form::kBig};

inline std::ostream& operator<<(std::ostream& out, Form form)
{
  return out << (form == Form::kSmall ? "small" : "big");
}

[[nodiscard]] inline Form form_of(const QNumber& q) { return q.is_big() ? Form::kBig : Form::kSmall; }

/// Whether a part may occur in a small number: the word's range without its lowest value.
[[nodiscard]] inline bool fits_part(mpz_srcptr z)
{
  return mpz_cmp_si(z, LONG_MAX) <= 0 && mpz_cmp_si(z, -LONG_MAX) >= 0;
}

[[nodiscard]] inline bool has_form(const Rational& value, Form form)
{
  return form == Form::kBig || (fits_part(value.num()) && fits_part(value.den()));
}

/// A number of the given value and form; has_form(value, form) holds.
[[nodiscard]] inline QNumber make(const Rational& value, Form form)
{
  if (form == Form::kSmall) return {mpz_get_si(value.num()), mpz_get_si(value.den())};
  // A big target of a copy stays big, and only the copy assignment goes through no arithmetic.
  QNumber result(Integer::power(100), Integer(1));
  const QNumber source(value.num(), value.den());
  result = source;
  return result;
}

/// 2^exponent + offset, in the big form.
[[nodiscard]] inline QNumber make_power(unsigned long exponent, long offset = 0)
{
  return make(Rational(Integer::power(exponent, offset), Integer(1)), Form::kBig);
}

[[nodiscard]] inline Rational value_of(const QNumber& q)
{
  Integer num;
  Integer den;
  q.get_numerator(num);
  q.get_denominator(den);
  return {num, den};
}

/// Whether q is stored in the given form with exactly the parts of `value`, which is in lowest terms.
[[nodiscard]] inline bool is_stored_as(const QNumber& q, const Rational& value, Form form)
{
  static Integer num;
  static Integer den;
  q.get_numerator(num);
  q.get_denominator(den);
  return mpz_cmp(num, value.num()) == 0 && mpz_cmp(den, value.den()) == 0 && form_of(q) == form &&
         q.is_canonical() && has_form(value, form);
}

}  // namespace lumo::test

#endif
