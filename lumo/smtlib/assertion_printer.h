#ifndef LUMO_SMTLIB_ASSERTION_PRINTER_H
#define LUMO_SMTLIB_ASSERTION_PRINTER_H

#include <cstddef>
#include <functional>
#include <ostream>
#include <span>
#include <string_view>

#include "lumo/smtlib/foreign_terms.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Says of a constant whether it must be declared, and notes that it is. It is asked once for each constant.
using Declare = std::function<bool(const Term*)>;

/// Prints a part of a conversation with a solver: declarations of the constants in the terms, in the order in which the
/// constants were made, then the assertions, as `print_script` prints them.
/// A name that SMT-LIB 2 cannot spell is an `Exception`, and nothing is printed.
void print_assertions(std::ostream& out, std::span<const Term* const> assertions, const Declare& declare);
/// The same for one assertion, whose term gets a name that needs no bars.
void print_named_assertion(std::ostream& out, const Term* assertion, std::string_view name,
                           const Declare& declare);
/// The same for the negation of the conjunction of some terms.
void print_negation(std::ostream& out, std::span<const Term* const> conjunction, const Declare& declare);
/// What assertions with foreign terms need in addition.
struct ForeignDeclare
{
  const ForeignForms* forms = nullptr;  ///< null if there are no foreign terms
  /// Says of a declaration of the table whether it must be printed, and notes that it is.
  std::function<bool(std::size_t)> declare;
};
void print_assertions(std::ostream& out, std::span<const Term* const> assertions, const Declare& declare,
                      const ForeignDeclare& foreign);
void print_named_assertion(std::ostream& out, const Term* assertion, std::string_view name,
                           const Declare& declare, const ForeignDeclare& foreign);
/// Prints a term in which placeholders are foreign terms.
void print_foreign_term(std::ostream& out, const Term* t, const ForeignForms& forms);
/// Prints `(declare-fun ...)`.
void print_declaration(std::ostream& out, const Term* constant);

}  // namespace lumo::smtlib

#endif
