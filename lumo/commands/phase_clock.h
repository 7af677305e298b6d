#ifndef LUMO_COMMANDS_PHASE_CLOCK_H
#define LUMO_COMMANDS_PHASE_CLOCK_H

#include <chrono>
#include <cstddef>
#include <optional>

#include "lumo/commands/phase.h"
#include "lumo/commands/progress.h"

namespace lumo::commands {

/// Follows a subcommand from phase to phase: adds up the time that each takes, and notifies an observer.
class PhaseClock
{
 public:
  /// The observer may be null.
  explicit PhaseClock(Progress* progress = nullptr) : progress_(progress) {}
  PhaseClock(const PhaseClock&) = delete;
  PhaseClock& operator=(const PhaseClock&) = delete;

  /// Enters a phase, on num_terms terms; 0 if their number is not known or does not matter.
  void enter(Phase phase, std::size_t num_terms = 0);
  /// The time until the next phase counts for no phase. The observer is not notified.
  void leave();
  /// The times of the completed phases.
  [[nodiscard]] const PhaseSeconds& get_seconds() const { return seconds_; }

 private:
  using Clock = std::chrono::steady_clock;

  Progress* progress_;
  std::optional<Phase> phase_;
  Clock::time_point start_;
  PhaseSeconds seconds_{};
};

}  // namespace lumo::commands

#endif
