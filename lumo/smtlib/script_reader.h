#ifndef LUMO_SMTLIB_SCRIPT_READER_H
#define LUMO_SMTLIB_SCRIPT_READER_H

#include <string_view>
#include <vector>

#include "lumo/smtlib/input_error.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

struct Assertion
{
  const Term* term;
  Place place;  ///< of the command
};

/// What a text declares and asserts, both in its order.
struct Script
{
  std::vector<const Term*> constants;  ///< all that are declared, whether used or not
  std::vector<Assertion> assertions;

  /// The terms of the assertions in their order.
  [[nodiscard]] std::vector<const Term*> get_asserted_terms() const;
};

/// Reads SMT-LIB 2 text over Booleans and bit-vectors into terms of a manager, which should be new: the names
/// of the text's constants must not be taken with other sorts.
///
/// The commands are scanned here, so that each has a place for messages; terms are parsed by Z3. Operators
/// that the term layer lacks become applications of those that it has; an application to more arguments than
/// two becomes nested ones; definitions, lets and named terms are replaced by what they stand for. Everything
/// else, and whatever asks for more than one query, is refused with an InputError. The text is needed during
/// the call only.
[[nodiscard]] Script read_script(TermManager& mgr, std::string_view text);

}  // namespace lumo::smtlib

#endif
