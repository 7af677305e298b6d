#ifndef LUMO_COMMANDS_STATISTICS_H
#define LUMO_COMMANDS_STATISTICS_H

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string_view>

#include "lumo/elimination/trail.h"
#include "lumo/terms/kind.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

enum class Phase : std::uint8_t
{
  kRead,
  kEliminate,
  kSolve,
  kExtend,
  kCheck,
};

inline constexpr std::array<std::string_view, 5> kPhaseNames = {"read", "eliminate", "solve", "extend",
                                                                "check"};

/// What one run did to a script.
struct Statistics
{
  GraphSize before;
  GraphSize after;  ///< of what a solver is asked
  std::size_t steps = 0;
  std::array<std::size_t, kNumOperators> eliminated{};  ///< applications of the script, by kind
  std::array<double, kPhaseNames.size()> seconds{};     ///< by phase

  void count_steps(const Trail& trail);
  [[nodiscard]] std::size_t get_num_eliminated() const;
};

/// Adds the time that it lives to that of a phase.
class PhaseTimer
{
 public:
  PhaseTimer(Statistics& statistics, Phase phase)
      : seconds_(statistics.seconds[static_cast<std::size_t>(phase)]), start_(Clock::now())
  {}
  PhaseTimer(const PhaseTimer&) = delete;
  PhaseTimer& operator=(const PhaseTimer&) = delete;
  ~PhaseTimer() { seconds_ += std::chrono::duration<double>(Clock::now() - start_).count(); }

 private:
  using Clock = std::chrono::steady_clock;

  double& seconds_;
  Clock::time_point start_;
};

/// A table for people.
void print_statistics(std::ostream& out, const Statistics& statistics);
/// The same as a JSON object, without the end of the line.
void print_statistics_json(std::ostream& out, const Statistics& statistics);

}  // namespace lumo::commands

#endif
