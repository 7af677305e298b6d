#ifndef LUMO_ELIMINATION_ELIMINATE_H
#define LUMO_ELIMINATION_ELIMINATE_H

#include <span>
#include <string_view>
#include <vector>

#include "lumo/elimination/trail.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// The result of `eliminate`.
struct Elimination
{
  std::vector<const Term*> assertions;  ///< the rest, without assertions that became true
  Trail trail;
  /// One term for each of `EliminationOptions::kept`, in the same order: the form that the kept term has in the
  /// rest. A constant is its own form.
  std::vector<const Term*> kept{};
};

/// The options of `eliminate`.
struct EliminationOptions
{
  /// Terms of any sort that are used outside of the assertions: later assertions, assumptions, another
  /// theory. A kept constant is never free and never gets a value from `extend`. A kept application may be
  /// replaced; `Elimination::kept` then has the term to use outside in its place. In every model of the rest,
  /// extended by `extend`, a kept term and its form have the same value. So the rest together with any
  /// constraints on the forms is satisfiable if and only if the assertions together with the same constraints
  /// on the kept terms are, as long as the constraints mention no constant of the assertions that is not kept.
  std::span<const Term* const> kept = {};
  /// The names of fresh constants are `<prefix>!<number>`. Choose a prefix that no name declared later starts with.
  std::string_view prefix = "u";
};

/// Replaces unconstrained applications in the asserted Boolean terms by fresh constants, by the rules of
/// docs/elimination.md. There is one pass. Terms that become equal or lose a use only while the rest is built may
/// stay, so a second call sometimes finds a little more.
///
/// A constant is free if it is not kept and occurs once in all of the assertions. Each argument position and each
/// assertion counts as an occurrence; a shared term counts once. The rest is satisfiable if and only if the
/// assertions are, and `extend` makes a model of the assertions from each model of the rest.
///
/// Time and memory are linear in the number of distinct terms in the assertions and the kept terms; the walk is
/// iterative. An assertion that is null, of another manager, or not Boolean is refused with an `Exception`; so is
/// a kept term that is null or of another manager.
[[nodiscard]] Elimination eliminate(TermManager& mgr, std::span<const Term* const> assertions,
                                    const EliminationOptions& options = {});

}  // namespace lumo

#endif
