#ifndef LUMO_SOLVERS_SOLUTION_MESSAGE_H
#define LUMO_SOLVERS_SOLUTION_MESSAGE_H

#include <span>
#include <string>
#include <string_view>

#include "lumo/solvers/answer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

// A solution, or a failure, on its way through a pipe between two copies of a process: bytes that both of them
// understand. A value takes its bits, and an index instead of a name.

/// The constants are those of the model, and perhaps others.
[[nodiscard]] std::string write_solution(const TermManager& mgr, const Solution& solution,
                                         std::span<const Term* const> constants);
[[nodiscard]] std::string write_failure(std::string_view sentence);
/// The failure that there is no memory; needs none.
[[nodiscard]] std::string write_out_of_memory();

/// Reads what the other copy has written, for the same constants. A failure that was written is a SolverError
/// with its sentence, and so is a message that is not whole.
[[nodiscard]] Solution read_solution(TermManager& mgr, std::span<const Term* const> constants,
                                     std::string_view message);

}  // namespace lumo::solvers

#endif
