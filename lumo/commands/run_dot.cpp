#include "lumo/commands/run_dot.h"

#include <memory>
#include <vector>

#include "lumo/commands/dot_printer.h"
#include "lumo/commands/subcommand.h"
#include "lumo/elimination/eliminate.h"

namespace lumo::commands {

int run_dot(const DotOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
            Progress* progress)
{
  return run_subcommand(err, [&] {
    const std::unique_ptr<Input> input = read_input(options.file, in, progress);
    const std::vector<const Term*> assertions = input->script.get_asserted_terms();
    enter(progress, Activity::kEliminating, input->mgr.get_num_terms());
    Elimination elimination;
    with_located_failures(input->name, [&] { elimination = eliminate(input->mgr, assertions); });

    std::vector<const Term*> marked;
    for (const Step& step : elimination.trail.steps) {
      const Term* t = options.is_after ? step.constant : step.original;
      if (t != nullptr) marked.push_back(t);
    }
    enter(progress, Activity::kPrinting);
    write_output(out, [&](std::ostream& stream) {
      print_dot(stream, options.is_after ? elimination.assertions : assertions, marked);
    });
    return kAnswered;
  });
}

}  // namespace lumo::commands
