#include "lumo/commands/run_solve.h"

#include <memory>
#include <ostream>

#include "lumo/commands/complete_model.h"
#include "lumo/commands/result_file.h"
#include "lumo/commands/run_shell.h"
#include "lumo/commands/subcommand.h"
#include "lumo/commands/text_escapes.h"
#include "lumo/smtlib/model_printer.h"

namespace lumo::commands {

namespace {

solvers::Solution solve_input(Input& input, const SolveMethod& method, Statistics& statistics,
                              PhaseClock& clock, std::string* certificate)
{
  return with_located_failures(input.name, [&] {
    try {
      return solve_script(input.mgr, input.script, method, statistics, clock, certificate);
    } catch (const CheckFailure& e) {
      throw_check_failure(input.name, e, ", so there is no answer");
    }
  });
}

void print_model_json(std::ostream& out, const std::vector<ModelValue>& model)
{
  const char* separator = "";
  out << '[';
  for (const ModelValue& value : model) {
    const Symbol* symbol = value.constant->get_symbol();
    out << separator << "{\"constant\": " << make_json_string(symbol->get_name()) << ", \"sort\": \""
        << symbol->get_output_type()->to_string() << "\", \"value\": \""
        << value.value->get_symbol()->get_name() << "\"}";
    separator = ", ";
  }
  out << ']';
}

void print_definitions_json(std::ostream& out, const std::vector<std::string>& definitions)
{
  const char* separator = "";
  out << "\"definitions\": [";
  for (const std::string& definition : definitions) {
    out << separator << make_json_string(definition);
    separator = ", ";
  }
  out << "], ";
}

void print_json(std::ostream& out, const SolveOptions& options, const solvers::Solution& solution,
                const Statistics& statistics, const PhaseSeconds& seconds)
{
  out << "{\"answer\": \"" << to_string(solution.answer) << "\", ";
  if (options.wants_model && solution.answer == solvers::Answer::kSat) {
    out << "\"model\": ";
    print_model_json(out, solution.model);
    out << ", ";
    if (!solution.definitions.empty()) print_definitions_json(out, solution.definitions);
  }
  if (!solution.reason.empty()) out << "\"reason\": " << make_json_string(solution.reason) << ", ";
  out << "\"stats\": ";
  print_statistics_json(out, statistics, seconds);
  out << "}\n";
}

void print_text(std::ostream& out, const SolveOptions& options, const solvers::Solution& solution)
{
  out << to_string(solution.answer) << '\n';
  if (options.wants_model && solution.answer == solvers::Answer::kSat)
    smtlib::print_model(out, solution.model, solution.definitions);
}

/// The file for the certificate, if it is wanted; it must not be where the answer goes.
std::unique_ptr<ResultFile> prepare_certificate(const SolveOptions& options)
{
  if (!options.certificate) return {};
  auto certificate = std::make_unique<ResultFile>("certificate", *options.certificate);
  const ResultFile answer("answer", "-");
  check_results(options.file, {&answer, certificate.get()});
  return certificate;
}

void write_certificate(ResultFile& file, const std::string& text, std::ostream& out, PhaseClock& clock)
{
  clock.enter(Phase::kWrite);
  file.open();
  file.write(out, [&](std::ostream& stream) { stream << text; });
  file.commit();
}

/// Answers each query of a text.
int solve_conversation(const SolveOptions& options, std::string_view text, std::ostream& out)
{
  if (options.wants_json || options.wants_statistics) {
    throw SubcommandFailure("lumo: " + make_input_name(options.file) + " makes several queries, but " +
                            (options.wants_json ? "--json" : "--stats") + " can tell of one only");
  }
  ShellOptions shell;
  shell.certificate = options.certificate;
  shell.file = options.file;
  shell.method = options.method;
  shell.wants_models = options.wants_model;
  return answer_commands(shell, text, out);
}

}  // namespace

int run_solve(const SolveOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
              Progress* progress)
{
  PhaseClock clock(progress);
  return run_subcommand(err, [&] {
    check_method(options.method);
    const std::unique_ptr<ResultFile> certificate_file = prepare_certificate(options);
    Statistics statistics;
    std::string certificate;
    const InputText text = read_input_text(options.file, in, clock);
    const std::unique_ptr<Input> input =
        try_read_script(options.file, text, err, smtlib::ForeignText::kTaken);
    if (input == nullptr) return solve_conversation(options, text.get(), out);
    const solvers::Solution solution =
        solve_input(*input, options.method, statistics, clock, certificate_file ? &certificate : nullptr);
    if (certificate_file && solution.answer == solvers::Answer::kUnsat)
      write_certificate(*certificate_file, certificate, out, clock);

    clock.enter(Phase::kPrint);
    write_output(out, [&](std::ostream& stream) {
      if (options.wants_json) {
        print_json(stream, options, solution, statistics, clock.get_seconds());
      } else {
        print_text(stream, options, solution);
      }
    });
    if (!solution.reason.empty()) {
      err << input->name << ": the answer is unknown, since " << solution.reason << '\n';
    }
    if (options.wants_statistics && !options.wants_json)
      print_statistics(err, statistics, clock.get_seconds());
    return kAnswered;
  });
}

}  // namespace lumo::commands
