#ifndef LUMO_SOLVERS_SOLVER_FAILURES_H
#define LUMO_SOLVERS_SOLVER_FAILURES_H

#include <string>
#include <string_view>

#include "lumo/solvers/child_process.h"
#include "lumo/solvers/solver_limits.h"

namespace lumo::solvers {

// The texts for failures of any solver process.

/// A text of several lines as one line: white space between words becomes one space. A long text is cut and
/// ends with `...`.
[[nodiscard]] std::string make_one_line(std::string_view text);

/// Why the answer is unknown, if the process was stopped; otherwise an empty text.
[[nodiscard]] std::string explain_stop(ChildEnd end, const SolverLimits& limits);

/// Describes how a process ended by a signal or exited without an answer; the text follows the name of the solver.
[[nodiscard]] std::string describe_end_without_answer(const ChildOutcome& outcome);

}  // namespace lumo::solvers

#endif
