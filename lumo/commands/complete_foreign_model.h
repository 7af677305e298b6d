#ifndef LUMO_COMMANDS_COMPLETE_FOREIGN_MODEL_H
#define LUMO_COMMANDS_COMPLETE_FOREIGN_MODEL_H

#include <span>
#include <string>
#include <vector>

#include "lumo/commands/complete_model.h"
#include "lumo/commands/script_elimination.h"
#include "lumo/commands/statistics.h"
#include "lumo/model/model_store.h"
#include "lumo/smtlib/foreign_evaluation.h"
#include "lumo/smtlib/foreign_model.h"
#include "lumo/terms/term_table.h"

namespace lumo::commands {

/// The model of a script with foreign terms.
struct CompletedModel
{
  std::vector<ModelValue> values;        ///< of the script's constants of the term layer
  std::vector<std::string> definitions;  ///< of everything else, in the words of the solver
};

/// Does what `complete_model` does for a script with foreign terms, and counts in the statistics what the check had to
/// believe the solver: the values of foreign terms, and assertions with quantifiers.
[[nodiscard]] CompletedModel complete_foreign_model(TermManager& mgr, const smtlib::Script& script,
                                                    const ScriptElimination& rest,
                                                    smtlib::ForeignModel& solver_model,
                                                    Statistics& statistics, PhaseClock& clock);

/// For each term of the manager, by its id, whether it contains one of these terms, also in arguments of foreign terms.
/// Only terms that the roots contain have an entry.
[[nodiscard]] TermTable<bool, 7> mark_containing(const smtlib::ForeignTerms& foreign,
                                                 std::span<const Term* const> roots,
                                                 std::span<const smtlib::ForeignTerms::Index> terms);

}  // namespace lumo::commands

#endif
