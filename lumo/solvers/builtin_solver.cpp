#include "lumo/solvers/builtin_solver.h"

#include <functional>
#include <new>
#include <string>
#include <vector>

#include "lumo/solvers/child_process.h"
#include "lumo/solvers/deadline.h"
#include "lumo/solvers/solution_message.h"
#include "lumo/solvers/solver_failures.h"
#include "lumo/solvers/z3_server.h"
#include "lumo/solvers/z3_solver.h"
#include "lumo/terms/term_walk.h"

namespace lumo::solvers {

namespace {

/// The work of the copy of this process: the message of a solution, or of the failure to find one. Z3's expressions and
/// the numerals of its model are made only there.
std::string write_work(const TermManager& mgr, std::span<const Term* const> constants,
                       const std::function<Solution()>& solve)
{
  try {
    return write_solution(mgr, solve(), constants);
  } catch (const SolverError& e) {
    return write_failure(e.what());
  } catch (const std::bad_alloc&) {
    return write_out_of_memory();
  }
}

ChildOutcome run(const std::function<std::string()>& work, const Deadline& deadline)
{
  try {
    return run_copy(work, deadline);
  } catch (const Exception& e) {
    throw SolverError(std::string("the built-in solver was not started: ") + e.what());
  }
}

/// The solution that the copy finds, with values of the constants.
Solution solve_apart(TermManager& mgr, std::span<const Term* const> constants, const SolverLimits& limits,
                     const Deadline& deadline, const std::function<Solution()>& solve)
{
  const ChildOutcome outcome = run([&] { return write_work(mgr, constants, solve); }, deadline);
  if (std::string reason = explain_stop(outcome.end, limits); !reason.empty())
    return {Answer::kUnknown, {}, reason};
  if (outcome.end == ChildEnd::kExit && !outcome.out.empty())
    return read_solution(mgr, constants, outcome.out);
  throw SolverError("the built-in solver " + describe_end_without_answer(outcome));
}

}  // namespace

bool has_builtin_solver() { return true; }

void serve_builtin(int in, int out, bool takes_any_terms)
{
  if (takes_any_terms) {
    serve_z3_text(in, out);
  } else {
    serve_z3(in, out);
  }
}

Solution solve_with_builtin(TermManager& mgr, std::span<const Term* const> assertions,
                            const SolverLimits& limits)
{
  const Deadline deadline(limits.seconds);
  const std::vector<const Term*> constants = collect_constants(assertions);
  return solve_apart(mgr, constants, limits, deadline,
                     [&] { return solve_with_z3(mgr, assertions, limits.wants_model); });
}

Solution solve_text_with_builtin(std::string_view script, const SolverLimits& limits)
{
  TermManager mgr;  // no constants
  const Deadline deadline(limits.seconds);
  return solve_apart(mgr, {}, limits, deadline, [&] { return solve_text_with_z3(std::string(script)); });
}

Solution solve_text_with_builtin(const std::string& script, const std::string& logic,
                                 const SolverLimits& limits, const ReadModel& read)
{
  const auto solve = [&]() -> std::string {
    try {
      return solve_text_with_z3(script, logic);
    } catch (const SolverError& e) {
      return std::string("(error \"") + e.what() + "\")";
    } catch (const std::bad_alloc&) {
      return "(error \"it ran out of memory\")";
    }
  };
  const ChildOutcome outcome = run(solve, Deadline(limits.seconds));
  return read_solver_output("the built-in solver", outcome, limits, read);
}

}  // namespace lumo::solvers
