#ifndef LUMO_TERMS_SYMBOL_SPELLING_H
#define LUMO_TERMS_SYMBOL_SPELLING_H

#include <cstdint>
#include <string_view>

namespace lumo {

/// The ways in which SMT-LIB 2 spells a symbol.
enum class SymbolSpelling : std::uint8_t
{
  kSimple,  ///< without bars
  kQuoted,  ///< between bars
  kNone,    ///< has no spelling: it contains a bar, a backslash or a control character
};

[[nodiscard]] SymbolSpelling get_symbol_spelling(std::string_view name);

/// Whether SMT-LIB 2 reserves the word, so that it cannot be a symbol without bars.
[[nodiscard]] bool is_reserved_word(std::string_view word);

}  // namespace lumo

#endif
