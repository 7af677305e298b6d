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
  PhaseClock clock(progress);
  return run_subcommand(err, [&] {
    const std::unique_ptr<Input> input = read_input(options.file, in, err, clock, options.query);
    const std::vector<const Term*> assertions = input->script.get_asserted_terms();
    clock.enter(Phase::kEliminate, input->mgr.get_num_terms());
    const Elimination elimination =
        with_located_failures(input->name, [&] { return eliminate(input->mgr, assertions); });

    std::vector<const Term*> marked;
    for (const Step& step : elimination.trail.steps) {
      const Term* t = options.is_after ? step.constant : step.original;
      if (t != nullptr) marked.push_back(t);
    }
    clock.enter(Phase::kPrint);
    write_output(out, [&](std::ostream& stream) {
      print_dot(stream, options.is_after ? elimination.assertions : assertions, marked);
    });
    return kAnswered;
  });
}

}  // namespace lumo::commands
