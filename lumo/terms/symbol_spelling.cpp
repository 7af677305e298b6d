#include "lumo/terms/symbol_spelling.h"

#include <algorithm>
#include <array>

#include "lumo/terms/characters.h"

namespace lumo {

namespace {

/// In the order of their bytes
constexpr std::array<std::string_view, 46> kReservedWords = {
    "!",
    "BINARY",
    "DECIMAL",
    "HEXADECIMAL",
    "NUMERAL",
    "STRING",
    "_",
    "as",
    "assert",
    "check-sat",
    "check-sat-assuming",
    "declare-const",
    "declare-datatype",
    "declare-datatypes",
    "declare-fun",
    "declare-sort",
    "declare-sort-parameter",
    "define-const",
    "define-fun",
    "define-fun-rec",
    "define-funs-rec",
    "define-sort",
    "echo",
    "exists",
    "exit",
    "forall",
    "get-assertions",
    "get-assignment",
    "get-info",
    "get-model",
    "get-option",
    "get-proof",
    "get-unsat-assumptions",
    "get-unsat-core",
    "get-value",
    "lambda",
    "let",
    "match",
    "par",
    "pop",
    "push",
    "reset",
    "reset-assertions",
    "set-info",
    "set-logic",
    "set-option",
};
static_assert(std::is_sorted(kReservedWords.begin(), kReservedWords.end()));

}  // namespace

bool is_reserved_word(std::string_view word)
{
  // Most names need no lookup: no reserved word has their first character.
  constexpr std::string_view kFirstCharacters = "!BDHNS_acdefglmprs";
  if (word.empty() || kFirstCharacters.find(word.front()) == std::string_view::npos) return false;
  return std::binary_search(kReservedWords.begin(), kReservedWords.end(), word);
}

SymbolSpelling get_symbol_spelling(std::string_view name)
{
  const bool is_simple = !name.empty() && !is_digit(name.front()) &&
                         std::all_of(name.begin(), name.end(), is_symbol_character) &&
                         !is_reserved_word(name);
  if (is_simple) return SymbolSpelling::kSimple;
  return std::all_of(name.begin(), name.end(), is_quotable_character) ? SymbolSpelling::kQuoted
                                                                      : SymbolSpelling::kNone;
}

}  // namespace lumo
