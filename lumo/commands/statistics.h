#ifndef LUMO_COMMANDS_STATISTICS_H
#define LUMO_COMMANDS_STATISTICS_H

#include <array>
#include <cstddef>
#include <iosfwd>
#include <string>

#include "lumo/commands/phase.h"
#include "lumo/elimination/trail.h"
#include "lumo/terms/kind.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

/// The counts of one run.
struct Statistics
{
  GraphSize before;
  GraphSize after;  ///< of the rest that the solver gets
  std::size_t steps = 0;
  std::size_t foreign_terms = 0;        ///< that the assertions contain, if a model was checked
  std::size_t believed_terms = 0;       ///< those whose values are the solver's word
  std::size_t believed_assertions = 0;  ///< assertions whose truth is the solver's word
  std::array<std::size_t, kNumOperators> eliminated{};  ///< applications of the script, by kind

  /// Who confirmed the certificate of unsat; empty if nobody was asked, or did
  std::string confirmer{};

  void count_steps(const Trail& trail);
  [[nodiscard]] std::size_t get_num_eliminated() const;
};

/// A table for people: sizes, eliminated applications, and the times of the phases.
void print_statistics(std::ostream& out, const Statistics& statistics, const PhaseSeconds& seconds);
/// The same as a JSON object, without a newline at the end.
void print_statistics_json(std::ostream& out, const Statistics& statistics, const PhaseSeconds& seconds);

}  // namespace lumo::commands

#endif
