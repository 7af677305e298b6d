#ifndef LUMO_ELIMINATION_ORDER_ATOM_H
#define LUMO_ELIMINATION_ORDER_ATOM_H

#include "lumo/numbers/qnumber.h"
#include "lumo/terms/kind.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

/// Whether the operator is one of the four orders: bvult, bvule, bvslt, bvsle.
[[nodiscard]] bool is_order(Kind kind);

/// An order atom with one free argument can be made true and false by it, save if the other argument is at the
/// end of the order that leaves no choice: nothing is less than the least, everything is at most the greatest.
struct OrderLimit
{
  QNumber bound;  ///< the other argument's value that leaves no choice, a pattern in [0, 2^w - 1]
  bool truth;     ///< what the atom is then
};

/// The limit of an atom of that order over operands of width w whose left or else right argument is free.
[[nodiscard]] OrderLimit get_order_limit(Kind kind, bool is_left_free, unsigned long w);

}  // namespace lumo

#pragma GCC visibility pop

#endif
