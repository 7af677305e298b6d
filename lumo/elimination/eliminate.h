#ifndef LUMO_ELIMINATION_ELIMINATE_H
#define LUMO_ELIMINATION_ELIMINATE_H

#include <span>
#include <vector>

#include "lumo/elimination/trail.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// What `eliminate` makes of assertions.
struct Elimination
{
  std::vector<const Term*> assertions;  ///< what remains, without those that became true
  Trail trail;
};

/// Replaces unconstrained applications of the asserted Boolean terms by fresh constants, by the rules of
/// docs/elimination.md. It is one pass: what becomes equal or loses a use only when the rest is put together
/// can stay, so another call now and then finds a little more.
///
/// A constant is free if it occurs once in all of the assertions, terms that are shared counted once, and each
/// argument position and each assertion counted. The rest is satisfiable if and only if the assertions are,
/// and `extend` makes a model of the assertions from each model of the rest.
///
/// Time and memory grow with the number of distinct terms in the assertions; the walk is iterative. An assertion
/// that is null, of another manager, or not Boolean, is refused with an `Exception`.
[[nodiscard]] Elimination eliminate(TermManager& mgr, std::span<const Term* const> assertions);

}  // namespace lumo

#endif
