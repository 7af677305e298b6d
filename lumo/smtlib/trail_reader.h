#ifndef LUMO_SMTLIB_TRAIL_READER_H
#define LUMO_SMTLIB_TRAIL_READER_H

#include <span>
#include <string_view>

#include "lumo/elimination/trail.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Reads the output of `print_trail`, which may have been edited, into terms of the manager of `constants`, which
/// are the constants of the script that the trail must belong to. The manager must not have the fresh constants
/// with other sorts. The steps' originals are null. Throws an InputError if the text is not a trail of that script.
/// The text is only needed during the call.
[[nodiscard]] Trail read_trail(TermManager& mgr, std::span<const Term* const> constants,
                               std::string_view text);

}  // namespace lumo::smtlib

#endif
