#include "lumo/solvers/solver_process.h"

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
#include "lumo/terms/term_walk.h"

namespace lumo::solvers {

namespace {

/// Takes the first line from the front of the text, without white space around it.
std::string_view take_line(std::string_view& text)
{
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  const std::size_t first = line.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return line.substr(first, line.find_last_not_of(kBlanks) - first + 1);
}

/// The first line that says something, or an empty one.
std::string_view find_line(std::string_view text)
{
  while (!text.empty()) {
    const std::string_view line = take_line(text);
    if (!line.empty()) return line;
  }
  return {};
}

std::optional<Answer> find_answer(std::string_view line)
{
  if (line == "sat") return Answer::kSat;
  if (line == "unsat") return Answer::kUnsat;
  // Some programs have a limit of their own and call its end so.
  if (line == "unknown" || line == "timeout") return Answer::kUnknown;
  return std::nullopt;
}

/// The one run of a solver
class SolverRun
{
 public:
  SolverRun(TermManager& mgr, const std::string& command, std::span<const Term* const> assertions,
            const SolverLimits& limits)
      : mgr_(mgr), command_(command), assertions_(assertions), limits_(limits)
  {}

  Solution solve();

 private:
  [[nodiscard]] std::string print() const;
  [[nodiscard]] ChildOutcome run() const;
  /// Reads past the answer in the output.
  [[nodiscard]] Answer take_answer(std::string_view& output) const;
  [[nodiscard]] std::vector<ModelValue> read(std::string_view output) const;
  [[noreturn]] void fail(const std::string& what_it_did) const;
  [[noreturn]] void fail_without_answer() const;

  TermManager& mgr_;
  const std::string& command_;
  std::span<const Term* const> assertions_;
  const SolverLimits& limits_;
  Deadline deadline_{limits_.seconds};
  std::vector<const Term*> constants_ = collect_constants(assertions_);
  ChildOutcome outcome_;
};

Solution SolverRun::solve()
{
  outcome_ = run();
  switch (outcome_.end) {
    case ChildEnd::kStopped:
      return {};
    case ChildEnd::kSignal:
      fail("was ended by signal " + std::to_string(outcome_.code));
    case ChildEnd::kTooVerbose:
      fail("printed more than " + std::to_string(kMaxOutput) + " bytes");
    case ChildEnd::kExit:
      break;
  }

  Solution solution;
  std::string_view output = outcome_.out;
  solution.answer = take_answer(output);
  if (solution.answer == Answer::kSat && limits_.wants_model) solution.model = read(output);
  return solution;
}

ChildOutcome SolverRun::run() const
{
  try {
    return run_child(command_, print(), deadline_);
  } catch (const Exception& e) {
    fail(std::string("was not started: ") + e.what());
  }
}

std::string SolverRun::print() const
{
  std::ostringstream script;
  smtlib::print_script(script, constants_, assertions_, limits_.wants_model);
  return std::move(script).str();
}

Answer SolverRun::take_answer(std::string_view& output) const
{
  while (!output.empty()) {
    const std::string_view line = take_line(output);
    if (const std::optional<Answer> answer = find_answer(line)) return *answer;
    // What comes behind an error does not answer the whole script.
    if (line.starts_with("(error")) fail("printed " + smtlib::make_excerpt(line) + " instead of an answer");
  }
  fail_without_answer();
}

std::vector<ModelValue> SolverRun::read(std::string_view output) const
{
  if (find_line(output).empty()) fail("answered sat, but printed no model");
  try {
    return smtlib::read_model(mgr_, constants_, output);
  } catch (const smtlib::InputError& e) {
    fail(std::string("answered sat, but its model cannot be read: ") + e.what());
  }
}

void SolverRun::fail(const std::string& what_it_did) const
{
  throw SolverError("the solver " + smtlib::make_excerpt(command_) + " " + what_it_did);
}

/// Quotes what the solver said instead, or else what it or the shell complained about.
void SolverRun::fail_without_answer() const
{
  const std::string end = "ended with status " + std::to_string(outcome_.code);
  const std::string_view found = find_line(outcome_.out);
  if (!found.empty()) fail(end + " and printed " + smtlib::make_excerpt(found) + " instead of an answer");
  const std::string_view complaint = find_line(outcome_.err);
  if (!complaint.empty())
    fail(end + " and without an answer, and complained: " + smtlib::make_excerpt(complaint));
  fail(end + " and without an answer");
}

}  // namespace

Solution solve_with_process(TermManager& mgr, const std::string& command,
                            std::span<const Term* const> assertions, const SolverLimits& limits)
{
  return SolverRun(mgr, command, assertions, limits).solve();
}

}  // namespace lumo::solvers
