#ifndef LUMO_SMTLIB_CERTIFICATE_PRINTER_H
#define LUMO_SMTLIB_CERTIFICATE_PRINTER_H

#include <iosfwd>
#include <span>

#include "lumo/elimination/trail.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// What was eliminated, and what is left.
struct Claim
{
  std::span<const Term* const> constants;   ///< all that the assertions contain, in the order of declaration
  std::span<const Term* const> assertions;  ///< of the script
  const Trail& trail;                       ///< of the elimination
  std::span<const Term* const> rest;        ///< the assertions that it left
};

/// Prints a script that an SMT-LIB 2 solver finds unsatisfiable if and only if the rest follows from the assertions.
///
/// It declares the constants, asserts the assertions, defines the constant of each step by the step's application, and
/// asserts the negation of the rest's conjunction. A definition gives a value to its constant in every model of the
/// assertions, since no definition needs itself. So if the script is unsatisfiable and the rest is, too, then so are the
/// assertions.
///
/// Shared terms are printed as by `print_script` and `print_trail`. The walk is iterative, and time and memory are linear
/// in the number of distinct terms. An `Exception` for a name that SMT-LIB 2 cannot spell, for a step's constant that
/// is also declared, and for definitions that are cyclic; then nothing is printed.
void print_certificate(std::ostream& out, const Claim& claim);

}  // namespace lumo::smtlib

#endif
