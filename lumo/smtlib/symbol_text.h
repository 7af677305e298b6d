#ifndef LUMO_SMTLIB_SYMBOL_TEXT_H
#define LUMO_SMTLIB_SYMBOL_TEXT_H

#include <string>
#include <string_view>

#include "lumo/terms/symbol_spelling.h"

namespace lumo::smtlib {

using lumo::is_reserved_word;

/// Whether the symbol of that name needs bars. A name that has no spelling, because it contains a bar, a
/// backslash or a control character, is an `Exception`.
[[nodiscard]] bool needs_bars(std::string_view name);
/// The symbol of that name as SMT-LIB 2 text, between bars if necessary. A name that has no spelling
/// is an `Exception`.
[[nodiscard]] std::string make_symbol_text(std::string_view name);

}  // namespace lumo::smtlib

#endif
