#ifndef LUMO_SMTLIB_SCRIPT_PRINTER_H
#define LUMO_SMTLIB_SCRIPT_PRINTER_H

#include <iosfwd>
#include <span>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Prints a complete script for any SMT-LIB 2 solver: declares the constants in their order, then all
/// other constants that occur, in the order in which they were made; asserts the terms; adds one query,
/// and a request for a model if `wants_model` is set.
///
/// A shared term is printed once, and the walk is iterative. An asserted conjunction becomes one assertion for each
/// conjunct. Assertions that share an application are printed as one conjunction, in which a `let` binds the
/// application: a definition of its own would take some solvers quadratic time. Chains of an associative operator
/// are printed as one application to many arguments, which readers nest from the left into the same terms. A name
/// that SMT-LIB 2 cannot spell is an `Exception`, and nothing is printed.
void print_script(std::ostream& out, std::span<const Term* const> constants,
                  std::span<const Term* const> assertions, bool wants_model);

class ForeignForms;

/// The same for assertions that contain placeholders of foreign terms: declares what these terms need, in the order of
/// the script, and sets the script's logic.
void print_script(std::ostream& out, std::span<const Term* const> assertions, bool wants_model,
                  const ForeignForms& foreign);

}  // namespace lumo::smtlib

#endif
