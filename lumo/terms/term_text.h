#ifndef LUMO_TERMS_TERM_TEXT_H
#define LUMO_TERMS_TERM_TEXT_H

#include <iosfwd>
#include <string>

#include "lumo/terms/exception.h"
#include "lumo/terms/term.h"

namespace lumo {

/// Prints a term as SMT-LIB 2 text. `let` binds applications that are used more than once, and some
/// deep ones, since many readers recurse once for each level of a term. So the text is linear in the number of
/// distinct terms, and so are time and memory; the walk is iterative.
///
/// The bound names start with an `s` and enough exclamation marks that no constant in the term has such a name. A
/// null pointer, and a constant whose name SMT-LIB 2 cannot spell, is refused with an `Exception`; then nothing is
/// printed.
void print_term(std::ostream& out, const Term* t);

/// The same as a string.
[[nodiscard]] std::string make_term_text(const Term* t);

}  // namespace lumo

#endif
