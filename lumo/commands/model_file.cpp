#include "lumo/commands/model_file.h"

#include "lumo/commands/subcommand.h"
#include "lumo/smtlib/model_reader.h"

namespace lumo::commands {

std::vector<ModelValue> read_model_file(TermManager& mgr, std::span<const Term* const> constants,
                                        const std::string& file, std::istream& in, Progress* progress)
{
  const std::string text = read_input_text(file, in, progress);
  std::vector<ModelValue> model;
  with_located_failures(make_input_name(file), [&] { model = smtlib::read_model(mgr, constants, text); });
  return model;
}

}  // namespace lumo::commands
