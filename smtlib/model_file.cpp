#include "smtlib/model_file.h"

#include "smtlib/command.h"
#include "smtlib/model_text.h"

namespace lumo::smtlib {

std::vector<ModelValue> read_model_file(TermManager& mgr, std::span<const Term* const> constants,
                                        const std::string& file, std::istream& in, Progress* progress)
{
  const std::string text = read_input_text(file, in, progress);
  std::vector<ModelValue> model;
  with_located_failures(make_input_name(file), [&] { model = read_model(mgr, constants, text); });
  return model;
}

}  // namespace lumo::smtlib
