#include "lumo/commands/model_file.h"

#include "lumo/commands/subcommand.h"
#include "lumo/smtlib/model_reader.h"

namespace lumo::commands {

std::vector<ModelValue> read_model_file(TermManager& mgr, std::span<const Term* const> constants,
                                        const std::string& file, std::istream& in, PhaseClock& clock)
{
  return read_located(file, in, clock,
                      [&](const InputText& text) { return smtlib::read_model(mgr, constants, text.get()); });
}

}  // namespace lumo::commands
