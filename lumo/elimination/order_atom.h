#ifndef LUMO_ELIMINATION_ORDER_ATOM_H
#define LUMO_ELIMINATION_ORDER_ATOM_H

#include "lumo/numbers/qnumber.h"
#include "lumo/terms/kind.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

/// Whether the operator is one of the four orders: bvult, bvule, bvslt, bvsle.
[[nodiscard]] bool is_order(Kind kind);

/// The free argument of an order atom can make it true or false unless the other argument is the bound: nothing is
/// less than the least value, and everything is at most the greatest.
struct OrderLimit
{
  QNumber bound;  ///< the value of the other argument that fixes the atom, a pattern in [0, 2^w - 1]
  bool truth;     ///< the value of the atom in that case
};

/// The limit of an atom of that order over operands of width w whose left (or else right) argument is free.
[[nodiscard]] OrderLimit get_order_limit(Kind kind, bool is_left_free, unsigned long w);

}  // namespace lumo

#pragma GCC visibility pop

#endif
