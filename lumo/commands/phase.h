#ifndef LUMO_COMMANDS_PHASE_H
#define LUMO_COMMANDS_PHASE_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace lumo::commands {

/// What a subcommand is doing.
enum class Phase : std::uint8_t
{
  kWait,  ///< for what comes on the standard input; for how long is not up to the program
  kRead,
  kEliminate,
  kSolve,
  kExtend,
  kCheck,
  kPrint,  ///< to the standard output and what else is open already
  kWrite,  ///< to files that have names
};

inline constexpr std::size_t kNumPhases = 8;

/// The time that each phase has taken.
using PhaseSeconds = std::array<double, kNumPhases>;

}  // namespace lumo::commands

#endif
