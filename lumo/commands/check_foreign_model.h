#ifndef LUMO_COMMANDS_CHECK_FOREIGN_MODEL_H
#define LUMO_COMMANDS_CHECK_FOREIGN_MODEL_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "lumo/model/model_store.h"
#include "lumo/smtlib/foreign_model.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// What lumo finds out about a model of a script with foreign terms, without a solver.
struct ForeignCheck
{
  std::optional<std::size_t> violated;  ///< the first assertion that is false
  std::optional<std::size_t> open;      ///< the first one that contains a term without a known value
  /// The heads of terms that lumo cannot evaluate although it knows the values of their arguments.
  std::vector<std::string> unknown;
};

/// Evaluates the assertions under a model. The store gets the values of constants, and of placeholders of foreign terms.
[[nodiscard]] ForeignCheck check_foreign_model(const smtlib::Script& script, smtlib::ForeignModel& model,
                                               ModelStore& store);

/// The declared constants in a term and in the arguments of its foreign terms.
[[nodiscard]] std::vector<const Term*> list_declared_constants(const smtlib::Script& script, const Term* t);

}  // namespace lumo::commands

#endif
