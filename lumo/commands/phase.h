#ifndef LUMO_COMMANDS_PHASE_H
#define LUMO_COMMANDS_PHASE_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace lumo::commands {

/// The phases of a subcommand.
enum class Phase : std::uint8_t
{
  kWait,  ///< for the standard input; the time does not depend on the program
  kRead,
  kEliminate,
  kSolve,
  kExtend,
  kCheck,
  kCertify,
  kPrint,  ///< to the standard output and other open descriptors
  kWrite,  ///< to files that it opens by name
};

inline constexpr std::size_t kNumPhases = 9;

/// The time that each phase has taken.
using PhaseSeconds = std::array<double, kNumPhases>;

}  // namespace lumo::commands

#endif
