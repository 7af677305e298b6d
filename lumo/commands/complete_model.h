#ifndef LUMO_COMMANDS_COMPLETE_MODEL_H
#define LUMO_COMMANDS_COMPLETE_MODEL_H

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "lumo/commands/phase_clock.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/model/model_value.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// Thrown if no model of a script can be made.
class CheckFailure : public Exception
{
 public:
  /// The place is that of the assertion that is not true, if the check failed.
  CheckFailure(std::optional<smtlib::Place> place, const std::string& sentence)
      : Exception(sentence), place_(place)
  {}

  [[nodiscard]] std::optional<smtlib::Place> get_place() const { return place_; }

 private:
  std::optional<smtlib::Place> place_;
};

/// Makes a model of a script from values of the constants in the rest of an elimination: extends it and checks it.
///
/// The result has a value for each constant of the script, in the order of their declaration, and makes every
/// assertion true. Otherwise throws a CheckFailure, which also says whether the rest was true.
[[nodiscard]] std::vector<ModelValue> complete_model(TermManager& mgr, const smtlib::Script& script,
                                                     const Elimination& elimination,
                                                     std::span<const ModelValue> values, PhaseClock& clock);

/// Ends a subcommand with the status kCheckFailed, since a model of the script `name` failed. The consequence
/// ends the sentence.
[[noreturn]] void throw_check_failure(const std::string& name, const CheckFailure& failure,
                                      const std::string& consequence);

}  // namespace lumo::commands

#endif
