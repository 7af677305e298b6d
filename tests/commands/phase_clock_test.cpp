#include "lumo/commands/phase_clock.h"

#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::commands {
namespace {

using namespace std::chrono_literals;

double get_seconds(const PhaseClock& clock, Phase phase)
{
  return clock.get_seconds()[static_cast<std::size_t>(phase)];
}

TEST(PhaseClock, AddsUpTheTimesOfAPhase)
{
  PhaseClock clock;
  clock.enter(Phase::kRead);
  std::this_thread::sleep_for(2ms);
  clock.enter(Phase::kCheck);
  EXPECT_GE(get_seconds(clock, Phase::kRead), 0.002);
  EXPECT_EQ(get_seconds(clock, Phase::kCheck), 0);
  const double once = get_seconds(clock, Phase::kRead);
  clock.enter(Phase::kRead);
  std::this_thread::sleep_for(2ms);
  clock.leave();
  EXPECT_GE(get_seconds(clock, Phase::kRead), once + 0.002);
}

TEST(PhaseClock, CountsNoTimeBetweenPhases)
{
  PhaseClock clock;
  clock.leave();
  clock.enter(Phase::kSolve);
  clock.leave();
  const double seconds = get_seconds(clock, Phase::kSolve);
  std::this_thread::sleep_for(2ms);
  clock.leave();
  EXPECT_EQ(get_seconds(clock, Phase::kSolve), seconds);
  EXPECT_EQ(get_seconds(clock, Phase::kWait), 0);
}

class Record : public Progress
{
 public:
  void enter(Phase phase, std::size_t num_terms) override { entries.emplace_back(phase, num_terms); }

  std::vector<std::pair<Phase, std::size_t>> entries;
};

TEST(PhaseClock, NotifiesItsObserver)
{
  Record record;
  PhaseClock clock(&record);
  clock.enter(Phase::kRead);
  clock.leave();
  clock.enter(Phase::kSolve, 5);
  EXPECT_EQ(record.entries,
            (std::vector<std::pair<Phase, std::size_t>>{{Phase::kRead, 0}, {Phase::kSolve, 5}}));
}

}  // namespace
}  // namespace lumo::commands
