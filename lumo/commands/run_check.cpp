#include "lumo/commands/run_check.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <unordered_set>
#include <vector>

#include "lumo/commands/complete_model.h"
#include "lumo/commands/model_file.h"
#include "lumo/commands/subcommand.h"
#include "lumo/elimination/extend.h"
#include "lumo/model/model_store.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

namespace {

constexpr std::size_t kMostConstants = 20;

void print_values(std::ostream& err, const Term* assertion, ModelStore& model,
                  const std::vector<ModelValue>& values)
{
  std::unordered_set<const Term*> defined;
  for (const ModelValue& value : values)
    defined.insert(value.constant);
  const std::vector<const Term*> constants = collect_constants(std::vector<const Term*>{assertion});
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

}  // namespace

int run_check(const CheckOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
              Progress* progress)
{
  PhaseClock clock(progress);
  return run_subcommand(err, [&] {
    check_one_standard_input({options.file, options.model});
    const std::unique_ptr<Input> input = read_input(options.file, in, err, clock, options.query);
    const std::vector<ModelValue> values =
        read_model_file(input->mgr, input->script.constants, options.model, in, clock);

    clock.enter(Phase::kCheck, input->mgr.get_num_terms());
    ModelStore model(&input->mgr);
    define_values(model, values);
    const std::vector<smtlib::Assertion>& assertions = input->script.assertions;
    const std::size_t violated = find_violated(input->mgr, input->script.get_asserted_terms(), model);
    const bool is_valid = violated == assertions.size();
    clock.enter(Phase::kPrint);
    write_output(out, [&](std::ostream& stream) { stream << (is_valid ? "valid\n" : "invalid\n"); });
    if (is_valid) return kAnswered;

    err << smtlib::make_located_message(
               input->name, assertions[violated].place,
               "this assertion is false under the model; the values of its constants are")
        << '\n';
    print_values(err, assertions[violated].term, model, values);
    return kRefused;
  });
}

}  // namespace lumo::commands
