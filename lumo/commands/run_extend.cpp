#include "lumo/commands/run_extend.h"

#include <memory>
#include <ostream>
#include <unordered_set>
#include <vector>

#include "lumo/commands/complete_model.h"
#include "lumo/commands/model_file.h"
#include "lumo/commands/subcommand.h"
#include "lumo/smtlib/model_reader.h"
#include "lumo/smtlib/trail_reader.h"

namespace lumo::commands {

namespace {

/// What a model of the rest may give values to: the script's constants and the trail's.
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

Trail read_trail_of(Input& input, const std::string& file, std::istream& in, Progress* progress)
{
  const std::string text = read_input_text(file, in, progress);
  Trail trail;
  with_located_failures(make_input_name(file),
                        [&] { trail = smtlib::read_trail(input.mgr, input.script.constants, text); });
  return trail;
}

std::vector<ModelValue> complete_model_of(Input& input, const Elimination& elimination,
                                          const std::vector<ModelValue>& values, Progress* progress)
{
  Statistics statistics;
  try {
    return complete_model(input.mgr, input.script, elimination, values, statistics, progress);
  } catch (const CheckFailure& e) {
    const std::string sentence = make_sentence(e) + "; the model or the trail may belong to another script";
    throw SubcommandFailure(
        e.get_place() ? make_message(input.name, *e.get_place(), sentence) : input.name + ": " + sentence,
        kCheckFailed);
  }
}

}  // namespace

int run_extend(const ExtendOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
               Progress* progress)
{
  return run_subcommand(err, [&] {
    check_one_standard_input({options.file, options.trail, options.model});
    const std::unique_ptr<Input> input = read_input(options.file, in, progress);
    const Trail trail = read_trail_of(*input, options.trail, in, progress);
    const std::vector<ModelValue> values =
        read_model_file(input->mgr, list_constants(input->script, trail), options.model, in, progress);
    const std::vector<ModelValue> model = complete_model_of(*input, {{}, trail}, values, progress);
    enter(progress, Activity::kPrinting);
    write_output(out, [&](std::ostream& stream) { smtlib::print_model(stream, model); });
    return kAnswered;
  });
}

}  // namespace lumo::commands
