#ifndef LUMO_SMTLIB_TRAIL_READER_H
#define LUMO_SMTLIB_TRAIL_READER_H

#include <span>
#include <string_view>

#include "lumo/elimination/trail.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Reads what `print_trail` has printed, perhaps edited by hand, back into terms of the manager of `constants`,
/// which are those of the script to which the trail must belong. Fresh constants must not be taken with other
/// sorts. The steps' originals are null. A text that is not a trail of that script is an InputError. The text is
/// needed during the call only.
[[nodiscard]] Trail read_trail(TermManager& mgr, std::span<const Term* const> constants,
                               std::string_view text);

}  // namespace lumo::smtlib

#endif
