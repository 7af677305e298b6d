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

/// The work of the copy of this process. Z3's expressions and the numerals of its model are made only there.
std::string solve_in_copy(TermManager& mgr, std::span<const Term* const> assertions,
                          std::span<const Term* const> constants, bool wants_model)
{
  try {
    return write_solution(mgr, solve_with_z3(mgr, assertions, wants_model), constants);
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

}  // namespace

bool has_builtin_solver() { return true; }

void serve_builtin(int in, int out) { serve_z3(in, out); }

Solution solve_with_builtin(TermManager& mgr, std::span<const Term* const> assertions,
                            const SolverLimits& limits)
{
  const Deadline deadline(limits.seconds);
  const std::vector<const Term*> constants = collect_constants(assertions);
  const ChildOutcome outcome =
      run([&] { return solve_in_copy(mgr, assertions, constants, limits.wants_model); }, deadline);
  if (std::string reason = explain_stop(outcome.end, limits); !reason.empty())
    return {Answer::kUnknown, {}, reason};
  if (outcome.end == ChildEnd::kExit && !outcome.out.empty())
    return read_solution(mgr, constants, outcome.out);
  throw SolverError("the built-in solver " + describe_end_without_answer(outcome));
}

}  // namespace lumo::solvers
