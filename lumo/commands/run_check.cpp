#include "lumo/commands/run_check.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <unordered_set>
#include <vector>

#include "lumo/commands/check_foreign_model.h"
#include "lumo/commands/model_file.h"
#include "lumo/commands/subcommand.h"
#include "lumo/elimination/extend.h"
#include "lumo/model/model_store.h"
#include "lumo/smtlib/symbol_text.h"

namespace lumo::commands {

namespace {

constexpr std::size_t kMostConstants = 20;

void print_values(std::ostream& err, const smtlib::Script& script, const Term* assertion, ModelStore& model,
                  const std::vector<ModelValue>& values)
{
  std::unordered_set<const Term*> defined;
  for (const ModelValue& value : values)
    defined.insert(value.constant);
  const std::vector<const Term*> constants = list_declared_constants(script, assertion);
  const std::size_t num_shown = std::min(constants.size(), kMostConstants);
  for (std::size_t i = 0; i < num_shown; ++i) {
    const Term* constant = constants[i];
    err << "  " << smtlib::make_excerpt(smtlib::make_symbol_text(constant->get_symbol()->get_name())) << " = "
        << smtlib::make_excerpt(model.get_value(constant)->get_symbol()->get_name())
        << (defined.contains(constant) ? "\n" : ", which the model leaves out\n");
  }
  if (num_shown < constants.size()) {
    err << "  and " << constants.size() - num_shown << " more constants\n";
  }
}

void print_verdict(std::ostream& out, const char* verdict)
{
  write_output(out, [&](std::ostream& stream) { stream << verdict << '\n'; });
}

void print_violated(std::ostream& err, const Input& input, std::size_t violated, ModelStore& model,
                    const std::vector<ModelValue>& values)
{
  const smtlib::Assertion& assertion = input.script.assertions[violated];
  err << smtlib::make_located_message(
             input.name, assertion.place,
             "this assertion is false under the model; the values of its constants are")
      << '\n';
  print_values(err, input.script, assertion.term, model, values);
}

/// Says which terms are not evaluated.
void print_open(std::ostream& err, const Input& input, const ForeignCheck& check)
{
  err << smtlib::make_located_message(
             input.name, input.script.assertions[*check.open].place,
             "the truth of this assertion under the model is not known; lumo does not evaluate")
      << '\n';
  const std::size_t num_shown = std::min(check.unknown.size(), kMostConstants);
  for (std::size_t i = 0; i < num_shown; ++i)
    err << "  " << smtlib::make_excerpt(check.unknown[i]) << '\n';
  if (num_shown < check.unknown.size())
    err << "  and " << check.unknown.size() - num_shown << " other heads of terms\n";
}

/// The check of a script with foreign terms.
int check_foreign(Input& input, const CheckOptions& options, std::istream& in, std::ostream& out,
                  std::ostream& err, PhaseClock& clock)
{
  smtlib::ForeignModel model(input.mgr, *input.script.foreign);
  read_located(options.model, in, clock,
               [&](const InputText& text) { model.read(input.script.constants, text.get()); });
  clock.enter(Phase::kCheck, input.mgr.get_num_terms());
  ModelStore store(&input.mgr);
  const ForeignCheck check = check_foreign_model(input.script, model, store);
  clock.enter(Phase::kPrint);
  print_verdict(out, check.violated ? "invalid" : check.open ? "unknown" : "valid");
  if (check.violated) {
    print_violated(err, input, *check.violated, store, model.get_values());
  } else if (check.open) {
    print_open(err, input, check);
  } else {
    return kAnswered;
  }
  return kRefused;
}

}  // namespace

int run_check(const CheckOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
              Progress* progress)
{
  PhaseClock clock(progress);
  return run_subcommand(err, [&] {
    check_one_standard_input({options.file, options.model});
    const std::unique_ptr<Input> input =
        read_input(options.file, in, err, clock, options.query, smtlib::ForeignText::kTaken);
    if (input->script.foreign != nullptr) return check_foreign(*input, options, in, out, err, clock);
    const std::vector<ModelValue> values =
        read_model_file(input->mgr, input->script.constants, options.model, in, clock);

    clock.enter(Phase::kCheck, input->mgr.get_num_terms());
    ModelStore model(&input->mgr);
    define_values(model, values);
    const std::size_t violated = find_violated(input->mgr, input->script.get_asserted_terms(), model);
    const bool is_valid = violated == input->script.assertions.size();
    clock.enter(Phase::kPrint);
    print_verdict(out, is_valid ? "valid" : "invalid");
    if (is_valid) return kAnswered;
    print_violated(err, *input, violated, model, values);
    return kRefused;
  });
}

}  // namespace lumo::commands
