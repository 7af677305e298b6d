#include "lumo/commands/run_invert.h"

#include <algorithm>
#include <memory>
#include <ostream>

#include "lumo/commands/invert.h"
#include "lumo/commands/subcommand.h"
#include "lumo/smtlib/model_printer.h"

namespace lumo::commands {

namespace {

void solve_assertion(Input& input, Inverter& inverter, std::size_t number, std::ostream& out)
{
  const Request request = make_request(input.mgr, input.script.assertions[number - 1].term);
  try {
    for (const ModelValue& definition : inverter.solve(request, number))
      smtlib::print_definition(out, definition);
  } catch (const Exception& e) {
    const std::string_view name = get_operator_info(request.term->get_symbol()->get_kind()).smtlib_name;
    throw Exception(std::string(name) + ": " + e.what());
  }
}

/// Returns whether every assertion got its definitions.
bool solve_input(Input& input, std::ostream& out, std::ostream& err)
{
  bool is_solved = true;
  Inverter inverter(input.mgr);
  for (std::size_t number = 1; number <= input.script.assertions.size() && out; ++number) {
    try {
      solve_assertion(input, inverter, number, out);
    } catch (const Exception& e) {
      err << input.name << ": assertion " << number << ": " << make_sentence(e) << '\n';
      is_solved = false;
    }
  }
  return is_solved;
}

/// Returns whether every assertion of every input got its definitions.
bool solve_inputs(std::vector<std::unique_ptr<Input>>& inputs, std::ostream& out, std::ostream& err)
{
  bool is_solved = true;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    if (i > 0) out << "(reset)\n";
    if (inputs.size() > 1) out << "; " << inputs[i]->name << '\n';
    is_solved = solve_input(*inputs[i], out, err) && is_solved;
    inputs[i].reset();
  }
  return is_solved;
}

}  // namespace

int run_invert(const std::vector<std::string>& files, std::istream& in, std::ostream& out, std::ostream& err,
               Progress* progress)
{
  PhaseClock clock(progress);
  std::vector<std::unique_ptr<Input>> inputs;
  int status = kAllSolved;
  for (const std::string& file : files) {
    status = std::max(status, run_subcommand(err, [&] {
                        inputs.push_back(read_single_query(file, in, err, clock));
                        return kAllSolved;
                      }));
  }
  if (status != kAllSolved) return status;

  return run_subcommand(err, [&] {
    clock.enter(Phase::kPrint);
    const bool is_solved =
        write_output(out, [&](std::ostream& stream) { return solve_inputs(inputs, stream, err); });
    return is_solved ? kAllSolved : kSomeRefused;
  });
}

}  // namespace lumo::commands
