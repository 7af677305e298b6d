#include "lumo/commands/complete_model.h"

#include "lumo/commands/subcommand.h"
#include "lumo/elimination/extend.h"

namespace lumo::commands {

namespace {

void extend_model(TermManager& mgr, const Trail& trail, ModelStore& model)
{
  try {
    extend(mgr, trail, model);
  } catch (const Exception& e) {
    throw CheckFailure({}, std::string("the model cannot be extended: ") + e.what());
  }
}

void check_model(TermManager& mgr, const smtlib::Script& script, const Elimination& elimination,
                 ModelStore& model)
{
  const std::size_t violated = find_violated(mgr, script.get_asserted_terms(), model);
  if (violated == script.assertions.size()) return;

  // The rest still has the values that the solver gave: extending only adds values of eliminated constants.
  const bool is_rest_true =
      find_violated(mgr, elimination.assertions, model) == elimination.assertions.size();
  throw CheckFailure(script.assertions[violated].place,
                     is_rest_true
                         ? "this assertion is false under the extended model"
                         : "this assertion is false under the extended model, and the solver's model does "
                           "not satisfy what the solver was asked");
}

}  // namespace

std::vector<ModelValue> complete_model(TermManager& mgr, const smtlib::Script& script,
                                       const Elimination& elimination, std::span<const ModelValue> values,
                                       PhaseClock& clock)
{
  clock.enter(Phase::kExtend, mgr.get_num_terms());
  ModelStore model(&mgr);
  define_values(model, values);
  extend_model(mgr, elimination.trail, model);

  clock.enter(Phase::kCheck, mgr.get_num_terms());
  check_model(mgr, script, elimination, model);
  std::vector<ModelValue> completed;
  completed.reserve(script.constants.size());
  for (const Term* constant : script.constants)
    completed.push_back({constant, model.get_value(constant)});
  clock.leave();
  return completed;
}

void throw_check_failure(const std::string& name, const CheckFailure& failure, const std::string& consequence)
{
  const std::string sentence = make_sentence(failure) + consequence;
  const std::optional<smtlib::Place> place = failure.get_place();
  throw SubcommandFailure(
      place ? smtlib::make_located_message(name, *place, sentence) : name + ": " + sentence, kCheckFailed);
}

}  // namespace lumo::commands
