#ifndef LUMO_SOLVERS_SOLUTION_MESSAGE_H
#define LUMO_SOLVERS_SOLUTION_MESSAGE_H

#include <span>
#include <string>
#include <string_view>

#include "lumo/solvers/answer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

// A solution or a failure as bytes, sent through a pipe between two copies of a process. A value is sent as its
// bits, and a constant as an index.

/// The constants include those of the model.
[[nodiscard]] std::string write_solution(const TermManager& mgr, const Solution& solution,
                                         std::span<const Term* const> constants);
[[nodiscard]] std::string write_failure(std::string_view sentence);
/// The message that memory has run out; allocates nothing.
[[nodiscard]] std::string write_out_of_memory();

/// Reads the message of the other copy, for the same constants. Throws a SolverError for a failure,
/// with its sentence, and for a message that is not complete.
[[nodiscard]] Solution read_solution(TermManager& mgr, std::span<const Term* const> constants,
                                     std::string_view message);

}  // namespace lumo::solvers

#endif
