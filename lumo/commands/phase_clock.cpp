#include "lumo/commands/phase_clock.h"

namespace lumo::commands {

void PhaseClock::enter(Phase phase, std::size_t num_terms)
{
  leave();
  if (progress_ != nullptr) progress_->enter(phase, num_terms);
  phase_ = phase;
  start_ = Clock::now();
}

void PhaseClock::leave()
{
  if (!phase_) return;
  seconds_[static_cast<std::size_t>(*phase_)] += std::chrono::duration<double>(Clock::now() - start_).count();
  phase_.reset();
}

}  // namespace lumo::commands
