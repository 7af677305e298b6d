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

/// What should have become a model of a script did not.
class CheckFailure : public Exception
{
 public:
  /// The place is that of the assertion that is not true, if it came to the check.
  CheckFailure(std::optional<smtlib::Place> place, const std::string& sentence)
      : Exception(sentence), place_(place)
  {}

  [[nodiscard]] std::optional<smtlib::Place> get_place() const { return place_; }

 private:
  std::optional<smtlib::Place> place_;
};

/// Makes a model of a script from values of the constants that an elimination has left: extends it and checks it.
///
/// The result has a value for each constant of the script, in the order of their declaration, and every assertion
/// is true under them; else it is a CheckFailure, which also tells whether what is left was true.
[[nodiscard]] std::vector<ModelValue> complete_model(TermManager& mgr, const smtlib::Script& script,
                                                     const Elimination& elimination,
                                                     std::span<const ModelValue> values, PhaseClock& clock);

/// Ends a subcommand since a model of the script of that name failed, with the status kCheckFailed. The consequence
/// ends the sentence.
[[noreturn]] void throw_check_failure(const std::string& name, const CheckFailure& failure,
                                      const std::string& consequence);

}  // namespace lumo::commands

#endif
