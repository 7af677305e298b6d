#include "lumo/smtlib/symbol_text.h"

#include <algorithm>
#include <array>

#include "lumo/smtlib/characters.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

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

bool is_simple_symbol(std::string_view name)
{
  return !name.empty() && !is_digit(name.front()) &&
         std::all_of(name.begin(), name.end(), is_symbol_character) && !is_reserved_word(name);
}

}  // namespace

bool is_reserved_word(std::string_view word)
{
  // Most names are not looked up: none of the words begins like them.
  constexpr std::string_view kFirstCharacters = "!BDHNS_acdefglmprs";
  if (word.empty() || kFirstCharacters.find(word.front()) == std::string_view::npos) return false;
  return std::binary_search(kReservedWords.begin(), kReservedWords.end(), word);
}

bool needs_bars(std::string_view name)
{
  if (is_simple_symbol(name)) return false;
  if (std::all_of(name.begin(), name.end(), is_quotable_character)) return true;
  throw Exception("the name " + make_excerpt(name) +
                  " contains a bar, a backslash or a control character, but SMT-LIB 2 has no symbol with one");
}

std::string make_symbol_text(std::string_view name)
{
  return needs_bars(name) ? "|" + std::string(name) + "|" : std::string(name);
}

}  // namespace lumo::smtlib
