#ifndef LUMO_TESTS_SUPPORT_NOTATION_H
#define LUMO_TESTS_SUPPORT_NOTATION_H

#include <string_view>

#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// Reads a term in SMT-LIB 2 notation, so that tests can state terms as text: `(bvadd x8 #x05)`, `((_ extract
/// 7 4) y16)`. Names are constants whose sort follows from the name: letters and a width (`x8`), or letters
/// alone for Bool (`p`). Throws std::invalid_argument for anything else.
const Term* parse_term(TermManager& mgr, std::string_view text);

}  // namespace lumo::test

#endif
