#include "lumo/solvers/solver_process.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/model_reader.h"
#include "lumo/smtlib/script_printer.h"
#include "lumo/solvers/child_process.h"
#include "lumo/solvers/deadline.h"
#include "lumo/solvers/solver_failures.h"
#include "lumo/terms/term_walk.h"

namespace lumo::solvers {

namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n\f\v";

/// Removes the first line from the text and returns it without surrounding white space.
std::string_view take_line(std::string_view& text)
{
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  const std::size_t first = line.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return line.substr(first, line.find_last_not_of(kWhiteSpace) - first + 1);
}

bool is_blank(std::string_view text) { return text.find_first_not_of(kWhiteSpace) == std::string_view::npos; }

/// The list at the start of the text, up to its closing parenthesis; the whole text if there is none.
std::string_view take_list(std::string_view text)
{
  std::size_t depth = 0;
  bool is_in_string = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') is_in_string = !is_in_string;
    if (is_in_string) continue;
    if (text[i] == '(') ++depth;
    if (text[i] == ')' && --depth == 0) return text.substr(0, i + 1);
  }
  return text;
}

std::optional<Answer> find_answer(std::string_view line)
{
  if (line == "sat") return Answer::kSat;
  if (line == "unsat") return Answer::kUnsat;
  // Some programs have their own time limit and print `timeout` when it is reached.
  if (line == "unknown" || line == "timeout") return Answer::kUnknown;
  return std::nullopt;
}

/// What a solver has printed
class SolverOutput
{
 public:
  SolverOutput(const std::string& name, const ChildOutcome& outcome, const SolverLimits& limits)
      : name_(name), outcome_(outcome), limits_(limits)
  {}

  Solution read(const ReadModel& read_model) const;

 private:
  /// Removes everything up to the answer from the output.
  [[nodiscard]] Solution take_answer(std::string_view& output) const;
  [[nodiscard]] std::string find_reason(std::string_view answer, std::string_view output) const;
  void take_model(std::string_view output, const ReadModel& read_model) const;
  [[noreturn]] void fail(const std::string& what_it_did) const;
  [[noreturn]] void fail_without_answer() const;

  const std::string& name_;
  const ChildOutcome& outcome_;
  const SolverLimits& limits_;
};

Solution SolverOutput::read(const ReadModel& read_model) const
{
  switch (outcome_.end) {
    case ChildEnd::kTimeOver:
    case ChildEnd::kInterrupted:
      return {Answer::kUnknown, {}, explain_stop(outcome_.end, limits_)};
    case ChildEnd::kSignal:
      fail(describe_end_without_answer(outcome_));
    case ChildEnd::kTooVerbose:
      fail("printed more than " + std::to_string(kMaxOutput) + " bytes");
    case ChildEnd::kExit:
      break;
  }

  std::string_view output = outcome_.out;
  Solution solution = take_answer(output);
  if (solution.answer == Answer::kSat && limits_.wants_model) take_model(output, read_model);
  return solution;
}

Solution SolverOutput::take_answer(std::string_view& output) const
{
  while (!output.empty()) {
    const std::string_view rest = output;
    const std::string_view line = take_line(output);
    if (const std::optional<Answer> answer = find_answer(line)) {
      if (*answer == Answer::kUnknown) return {*answer, {}, find_reason(line, output)};
      return {*answer, {}, {}};
    }
    // An answer after an error is not an answer to the whole script.
    if (line.starts_with("(error")) {
      const std::string_view error = take_list(rest.substr(rest.find('(')));
      fail("printed " + make_one_line(error) + " instead of an answer");
    }
  }
  fail_without_answer();
}

/// Why the answer is unknown, if the output says so; some programs print it without a request.
std::string SolverOutput::find_reason(std::string_view answer, std::string_view output) const
{
  if (answer == "timeout") return name_ + " reached a time limit of its own";
  constexpr std::string_view kKeyword = "(:reason-unknown";
  const std::size_t place = output.find(kKeyword);
  if (place == std::string_view::npos) return {};
  return name_ + " said " + make_one_line(take_list(output.substr(place)));
}

void SolverOutput::take_model(std::string_view output, const ReadModel& read_model) const
{
  if (is_blank(output)) fail("answered sat, but printed no model");
  try {
    read_model(output);
  } catch (const smtlib::InputError& e) {
    // The model begins on a new line, so its columns are those of the whole output.
    const auto model_start = outcome_.out.end() - static_cast<std::ptrdiff_t>(output.size());
    const auto num_lines = std::count(outcome_.out.begin(), model_start, '\n');
    const std::size_t line = e.get_place().line + static_cast<std::size_t>(num_lines);
    fail("answered sat, but its model cannot be read at line " + std::to_string(line) + ", column " +
         std::to_string(e.get_place().column) + " of its output: " + make_one_line(e.what()));
  }
}

void SolverOutput::fail(const std::string& what_it_did) const
{
  throw SolverError(name_ + " " + what_it_did);
}

/// Quotes the solver's output, or else the error output of the solver or the shell.
void SolverOutput::fail_without_answer() const
{
  if (is_blank(outcome_.out)) fail(describe_end_without_answer(outcome_));
  fail("ended with status " + std::to_string(outcome_.code) + " and printed " + make_one_line(outcome_.out) +
       " instead of an answer");
}

}  // namespace

Solution read_solver_output(const std::string& name, const ChildOutcome& outcome, const SolverLimits& limits,
                            const ReadModel& read)
{
  return SolverOutput(name, outcome, limits).read(read);
}

Solution solve_text_with_process(const std::string& command, std::string_view script,
                                 const SolverLimits& limits, const ReadModel& read)
{
  const std::string name = "the solver \"" + smtlib::make_excerpt(command) + "\"";
  const auto run = [&] {
    try {
      return run_child(command, script, Deadline(limits.seconds));
    } catch (const Exception& e) {
      throw SolverError(name + " was not started: " + e.what());
    }
  };
  return read_solver_output(name, run(), limits, read);
}

Solution solve_text_with_process(const std::string& command, std::string_view script,
                                 const SolverLimits& limits)
{
  SolverLimits without_model = limits;
  without_model.wants_model = false;
  return solve_text_with_process(command, script, without_model, {});
}

Solution solve_with_process(TermManager& mgr, const std::string& command,
                            std::span<const Term* const> assertions, const SolverLimits& limits)
{
  const std::vector<const Term*> constants = collect_constants(assertions);
  std::ostringstream script;
  smtlib::print_script(script, constants, assertions, limits.wants_model);
  std::vector<ModelValue> model;
  Solution solution = solve_text_with_process(
      command, std::move(script).str(), limits,
      [&](std::string_view output) { model = smtlib::read_model(mgr, constants, output); });
  solution.model = std::move(model);
  return solution;
}

}  // namespace lumo::solvers
