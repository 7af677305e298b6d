#ifndef LUMO_COMMANDS_SCRIPT_ELIMINATION_H
#define LUMO_COMMANDS_SCRIPT_ELIMINATION_H

#include <memory>
#include <ostream>
#include <vector>

#include "lumo/elimination/eliminate.h"
#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// A constant of the rest that stands for a foreign term: its value is what the solver says of the term.
struct ForeignQuestion
{
  smtlib::ForeignTerms::Index term;
  const Term* constant;
};

/// What elimination leaves of a script, with what it needs of foreign terms.
struct ScriptElimination
{
  Elimination elimination;
  /// The arguments of foreign terms in the rest; null if the script has no foreign terms.
  std::unique_ptr<smtlib::ForeignForms> forms;
  smtlib::ForeignTerms::Needs needs;       ///< of the script's assertions
  std::vector<ForeignQuestion> questions;  ///< that were added to the rest
};

/// Eliminates in the assertions of a script, or leaves them as they are. Foreign terms are kept, and so are their
/// arguments.
[[nodiscard]] ScriptElimination eliminate_script(TermManager& mgr, const smtlib::Script& script,
                                                 bool eliminates = true);

/// Adds equations to the rest: a constant is equal to each foreign term of which lumo cannot compute the value. Of a
/// quantifier it does so only if something else than the assertions depends on it, since such equations are harder.
void add_questions(TermManager& mgr, const smtlib::ForeignTerms& foreign, ScriptElimination& rest);

/// Prints the rest as a script.
void print_rest(std::ostream& out, const ScriptElimination& rest);

}  // namespace lumo::commands

#endif
