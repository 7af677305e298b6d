#ifndef LUMO_SMTLIB_TRAIL_PRINTER_H
#define LUMO_SMTLIB_TRAIL_PRINTER_H

#include <iosfwd>
#include <span>

#include "lumo/elimination/trail.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Prints a trail as SMT-LIB 2 text that any solver can load: declarations of the constants, which are
/// those of the script whose applications were eliminated; for each step, a definition
///
///     (define-fun u!0 () (_ BitVec 8) (bvadd x y))
///     (set-info :lumo-step "u!0 x")
///
/// and for each fact, an assertion. The strings hold the fresh constant of the step and then its free arguments, as
/// SMT-LIB 2 spells them; they come in the order of elimination. Definitions come before their use. An application
/// that several steps contain has a definition of its own, without a string; a term that one step uses several
/// times is bound by `let`.
///
/// The walk is iterative and prints each term once. A name that SMT-LIB 2 cannot spell is an `Exception`, as is a
/// trail with a constant that is neither one of `constants` nor of one step; then nothing is printed.
void print_trail(std::ostream& out, std::span<const Term* const> constants, const Trail& trail);

}  // namespace lumo::smtlib

#endif
