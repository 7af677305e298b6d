#ifndef LUMO_SMTLIB_SYMBOL_TEXT_H
#define LUMO_SMTLIB_SYMBOL_TEXT_H

#include <string>
#include <string_view>

namespace lumo::smtlib {

/// Whether SMT-LIB 2 keeps the word for itself, so that it names nothing without bars.
[[nodiscard]] bool is_reserved_word(std::string_view word);

/// Whether the symbol of that name stands between bars. A name that has no spelling, because it contains a bar, a
/// backslash or a control character, is an `Exception`.
[[nodiscard]] bool needs_bars(std::string_view name);
/// The symbol of that name as SMT-LIB 2 text, between bars where it must be. A name that has no spelling
/// is an `Exception`.
[[nodiscard]] std::string make_symbol_text(std::string_view name);

}  // namespace lumo::smtlib

#endif
