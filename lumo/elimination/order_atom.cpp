#include "lumo/elimination/order_atom.h"

#include "lumo/numbers/bvnumber.h"

namespace lumo {

bool is_order(Kind kind)
{
  return kind == Kind::kBvUlt || kind == Kind::kBvUle || kind == Kind::kBvSlt || kind == Kind::kBvSle;
}

// The bound is the least value if the free argument must be below it (x < e), or if every other argument is at
// least it anyway (e <= x). In the two other cases it is the greatest value.
OrderLimit get_order_limit(Kind kind, bool is_left_free, unsigned long w)
{
  const bool is_strict = kind == Kind::kBvUlt || kind == Kind::kBvSlt;
  const bool is_signed = kind == Kind::kBvSlt || kind == Kind::kBvSle;
  const QNumber least = is_signed ? BVNumber::pow2(w - 1) : QNumber();
  if (is_strict == is_left_free) return {least, !is_strict};
  // The patterns form a circle on which the greatest precedes the least.
  return {(is_signed ? least : BVNumber::pow2(w)) - QNumber(1), !is_strict};
}

}  // namespace lumo
