#include "lumo/smtlib/symbol_text.h"

#include "lumo/smtlib/input_error.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

bool needs_bars(std::string_view name)
{
  switch (get_symbol_spelling(name)) {
    case SymbolSpelling::kSimple:
      return false;
    case SymbolSpelling::kQuoted:
      return true;
    case SymbolSpelling::kNone:
      break;
  }
  throw Exception(
      "the name " + make_excerpt(name) +
      " contains a bar, a backslash or a control character, but SMT-LIB 2 has no symbol with one");
}

std::string make_symbol_text(std::string_view name)
{
  return needs_bars(name) ? "|" + std::string(name) + "|" : std::string(name);
}

}  // namespace lumo::smtlib
