#ifndef LUMO_TESTS_NUMBERS_NUMBER_TESTING_H
#define LUMO_TESTS_NUMBERS_NUMBER_TESTING_H

#include <ostream>

#include <gtest/gtest.h>

#include "tests/numbers/number_forms.h"

namespace lumo::test {

/// As `is_stored_as`, with a message for a failed test.
[[nodiscard]] inline ::testing::AssertionResult holds(const QNumber& q, const Rational& value, Form form)
{
  if (is_stored_as(q, value, form)) return ::testing::AssertionSuccess();
  Integer num;
  Integer den;
  q.get_numerator(num);
  q.get_denominator(den);
  return ::testing::AssertionFailure()
         << "got " << num << '/' << den << " (" << form_of(q) << (q.is_canonical() ? "" : ", not canonical")
         << "), expected " << value << " (" << form << ')';
}

}  // namespace lumo::test

namespace lumo {

/// Lets GoogleTest print numbers.
// NOLINTNEXTLINE(readability-identifier-naming): the name that GoogleTest looks for
inline void PrintTo(const QNumber& q, std::ostream* out)
{
  *out << q.to_string() << " (" << test::form_of(q) << ')';
}

}  // namespace lumo

#endif
