#ifndef LUMO_TESTS_SUPPORT_NUMBER_H
#define LUMO_TESTS_SUPPORT_NUMBER_H

#include <ostream>

#include "lumo/numbers/bvnumber.h"
#include "lumo/numbers/qnumber.h"

namespace lumo {

inline std::ostream& operator<<(std::ostream& out, const QNumber& q)
{
  return out << q.to_string() << (q.is_big() ? " (big)" : "");
}

}  // namespace lumo

namespace lumo::test {

/// The same value in the big form.
[[nodiscard]] inline QNumber in_big_form(const QNumber& q)
{
  QNumber result = BVNumber::pow2(100);
  result += q;
  result -= BVNumber::pow2(100);
  return result;
}

}  // namespace lumo::test

#endif
