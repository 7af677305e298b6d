#ifndef LUMO_SOLVERS_SOLVER_FAILURES_H
#define LUMO_SOLVERS_SOLVER_FAILURES_H

#include <string>
#include <string_view>

#include "lumo/solvers/child_process.h"
#include "lumo/solvers/solver_limits.h"

namespace lumo::solvers {

// The words for what can happen to any solver that is a process of its own.

/// A text of several lines as one line: white space between words becomes one blank. A long text is cut and
/// ends with `...`.
[[nodiscard]] std::string make_one_line(std::string_view text);

/// Why the answer is unknown, if the process was stopped; else an empty text.
[[nodiscard]] std::string explain_stop(ChildEnd end, const SolverLimits& limits);

/// What a process did that a signal has ended, or that exited without an answer, after the name of the solver.
[[nodiscard]] std::string describe_end_without_answer(const ChildOutcome& outcome);

}  // namespace lumo::solvers

#endif
