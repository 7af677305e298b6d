#ifndef LUMO_SMTLIB_SCRIPT_READER_H
#define LUMO_SMTLIB_SCRIPT_READER_H

#include <string>
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
  std::vector<std::string>
      skipped;  ///< the commands that ask for output, each once: `get-value`, `echo`, ...

  /// The terms of the assertions in their order.
  [[nodiscard]] std::vector<const Term*> get_asserted_terms() const;
};

/// Reads SMT-LIB 2 text with at most one query over Booleans and bit-vectors into terms of a manager, which should
/// be new: the names of the text's constants must not be taken with other sorts.
///
/// One level may be pushed before the query and popped after it. Operators that the term layer lacks become
/// applications of those that it has; an application to more arguments than two becomes nested ones; definitions,
/// lets and named terms are replaced by what they stand for. All else is an InputError. Time and memory are linear in
/// the text and in what is made of it, and no depth of nesting is too large. The text is needed during the call only.
[[nodiscard]] Script read_script(TermManager& mgr, std::string_view text);

}  // namespace lumo::smtlib

#endif
