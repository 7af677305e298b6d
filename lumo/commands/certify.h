#ifndef LUMO_COMMANDS_CERTIFY_H
#define LUMO_COMMANDS_CERTIFY_H

#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "lumo/commands/query_source.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/solvers/answer.h"

namespace lumo::commands {

/// Whether a second solver must confirm that what elimination leaves follows from the script before the answer is
/// `unsat`, and which one.
struct Certification
{
  bool is_wanted = false;
  std::optional<std::string> checker_command{};  ///< the built-in solver if empty
};

/// Refuses a certification without a checker, as a SubcommandFailure.
void check_certification(const Certification& certification);

/// The name of the checker in texts: `Z3`, or the command in quotation marks.
[[nodiscard]] std::string get_checker_name(const Certification& certification);

/// Prints the certificate of an elimination in a script, of terms of the manager.
void print_certificate(std::ostream& out, TermManager& mgr, const smtlib::Script& script,
                       const Elimination& elimination);
[[nodiscard]] std::string make_certificate(TermManager& mgr, const smtlib::Script& script,
                                           const Elimination& elimination);

/// The certificate of a query in a conversation: what the solver was told follows from the assertions and assumptions.
[[nodiscard]] std::string make_query_certificate(TermManager& mgr, const QuerySource& queries,
                                                 std::span<const Term* const> assumptions,
                                                 std::span<const Term* const> told);

/// The answer of a solver for the rest that said unsat, after the checker has read the certificate: unsat if it
/// confirms it, unknown if it gives no answer, perhaps for lack of time. Throws a CheckFailure if it refutes the
/// certificate, and a SolverError if the checker fails.
[[nodiscard]] solvers::Solution confirm_unsat(std::string_view certificate,
                                              const Certification& certification,
                                              std::optional<double> seconds);

}  // namespace lumo::commands

#endif
