#ifndef LUMO_COMMANDS_MODEL_FILE_H
#define LUMO_COMMANDS_MODEL_FILE_H

#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "lumo/commands/phase_clock.h"
#include "lumo/model/model_value.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// Reads a model of some of the constants from a file, or from `in` if the file is `-`. Throws a SubcommandFailure
/// if it cannot be read.
[[nodiscard]] std::vector<ModelValue> read_model_file(TermManager& mgr,
                                                      std::span<const Term* const> constants,
                                                      const std::string& file, std::istream& in,
                                                      PhaseClock& clock);

}  // namespace lumo::commands

#endif
