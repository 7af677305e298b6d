#ifndef LUMO_COMMANDS_PROGRESS_H
#define LUMO_COMMANDS_PROGRESS_H

#include <cstddef>
#include <string>

#include "lumo/commands/phase.h"

namespace lumo::commands {

/// Observes what a subcommand is doing while it works.
class Progress
{
 public:
  Progress() = default;
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  virtual ~Progress() = default;

  /// The subcommand enters a phase, on num_terms terms; 0 if their number is not known or does not matter.
  virtual void enter(Phase phase, std::size_t num_terms) = 0;
};

/// The text of the status line: `solving: 1,200,000 terms, 3.4 s`.
[[nodiscard]] std::string make_progress_text(Phase phase, std::size_t num_terms, double seconds);

}  // namespace lumo::commands

#endif
