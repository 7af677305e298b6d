#ifndef LUMO_ELIMINATION_GUARD_LEMMAS_H
#define LUMO_ELIMINATION_GUARD_LEMMAS_H

#include <span>
#include <vector>

#include "lumo/elimination/trail.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// A trail and a rest that say the same as those of an elimination, for a solver that is to find that the rest follows.
struct GuardLemmas
{
  Trail trail;
  std::vector<const Term*> rest;  ///< the lemmas, then the assertions
};

/// Replaces each guarded atom, such as (and f (not (= e 0))), by the constant f of its step, and adds the lemma that the
/// two are equal. If f has the value of its application, the lemmas and the new rest are true if and only if the old rest
/// is.
///
/// The terms of the new rest are those of the assertions once the steps are expanded, so that only the lemmas need a
/// proof. Otherwise a solver would have to find out that products are equal whose factors have a guard and none.
///
/// Time and memory are linear in the number of distinct terms, and the walk is iterative.
[[nodiscard]] GuardLemmas separate_guards(TermManager& mgr, const Trail& trail,
                                          std::span<const Term* const> rest);

}  // namespace lumo

#endif
