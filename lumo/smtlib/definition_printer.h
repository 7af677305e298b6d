#ifndef LUMO_SMTLIB_DEFINITION_PRINTER_H
#define LUMO_SMTLIB_DEFINITION_PRINTER_H

#include <iosfwd>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Prints one line `(define-fun x () (_ BitVec 8) #x07)`: the constant is a declared one, the value a
/// numeral, true or false. A name that SMT-LIB 2 cannot spell is an `Exception`, and nothing is printed.
void print_definition(std::ostream& out, const Term* constant, const Term* value);

}  // namespace lumo::smtlib

#endif
