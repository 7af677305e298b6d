#include "lumo/commands/run_extend.h"

#include <memory>
#include <ostream>
#include <unordered_set>
#include <vector>

#include "lumo/commands/complete_model.h"
#include "lumo/commands/model_file.h"
#include "lumo/commands/subcommand.h"
#include "lumo/smtlib/model_printer.h"
#include "lumo/smtlib/trail_reader.h"

namespace lumo::commands {

namespace {

/// The constants that a model of the rest may define: those of the script and of the trail.
std::vector<const Term*> list_constants(const smtlib::Script& script, const Trail& trail)
{
  std::vector<const Term*> constants = script.constants;
  std::unordered_set<const Term*> known(constants.begin(), constants.end());
  const auto add = [&](const Term* t) {
    if (t->get_symbol()->get_kind() == Kind::kConstant && known.insert(t).second) constants.push_back(t);
  };
  for (const Step& step : trail.steps)
    add(step.constant);
  for (const Term* fact : trail.facts)
    add(fact);
  return constants;
}

std::vector<ModelValue> complete_model_of(Input& input, const Elimination& elimination,
                                          const std::vector<ModelValue>& values, PhaseClock& clock)
{
  try {
    return complete_model(input.mgr, input.script, elimination, values, clock);
  } catch (const CheckFailure& e) {
    throw_check_failure(input.name, e, "; the model or the trail may belong to another script");
  }
}

}  // namespace

int run_extend(const ExtendOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
               Progress* progress)
{
  PhaseClock clock(progress);
  return run_subcommand(err, [&] {
    check_one_standard_input({options.file, options.trail, options.model});
    const std::unique_ptr<Input> input = read_input(options.file, in, err, clock, options.query);
    const Trail trail = read_located(options.trail, in, clock, [&](const InputText& text) {
      return smtlib::read_trail(input->mgr, input->script.constants, text.get());
    });
    const std::vector<ModelValue> values =
        read_model_file(input->mgr, list_constants(input->script, trail), options.model, in, clock);
    const std::vector<ModelValue> model = complete_model_of(*input, {{}, trail}, values, clock);
    clock.enter(Phase::kPrint);
    write_output(out, [&](std::ostream& stream) { smtlib::print_model(stream, model); });
    return kAnswered;
  });
}

}  // namespace lumo::commands
