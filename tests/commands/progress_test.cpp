#include "lumo/commands/progress.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/commands/run_check.h"
#include "lumo/commands/run_dot.h"
#include "lumo/commands/run_extend.h"
#include "lumo/commands/run_invert.h"
#include "lumo/commands/run_simplify.h"
#include "lumo/commands/run_solve.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

using commands::Activity;

struct ProgressRow
{
  Activity activity;
  std::size_t num_terms;
  double seconds;
  std::string text;
};

TEST(Progress, IsToldInWords)
{
  const std::vector<ProgressRow> rows = {
      {Activity::kReading, 0, 1.25, "reading: 1.2 s"},
      {Activity::kEliminating, 1200000, 3.4, "eliminating: 1,200,000 terms, 3.4 s"},
      {Activity::kSolving, 1, 0, "solving: 1 term, 0.0 s"},
      {Activity::kExtending, 999, 60, "extending: 999 terms, 60.0 s"},
      {Activity::kChecking, 1000, 3600, "checking: 1,000 terms, 3600.0 s"},
      {Activity::kPrinting, 0, 2, "printing: 2.0 s"},
      {Activity::kWriting, 123456, 2, "writing: 123,456 terms, 2.0 s"},
  };
  for (const ProgressRow& row : rows)
    EXPECT_EQ(make_progress_text(row.activity, row.num_terms, row.seconds), row.text);
}

/// Remembers what it was told, each activity once if it came several times in a row.
class ProgressRecord : public commands::Progress
{
 public:
  void enter(Activity activity, std::size_t num_terms) override
  {
    if (activities.empty() || activities.back() != activity) activities.push_back(activity);
    counts.emplace_back(activity, num_terms);
  }

  std::vector<Activity> activities;
  std::vector<std::pair<Activity, std::size_t>> counts;
};

constexpr std::string_view kProgressScript =
    "(declare-const x (_ BitVec 4))\n(declare-const y (_ BitVec 4))\n"
    "(assert (= (bvurem x #x5) #x2))\n(assert (= (bvadd y x) #x0))\n";

class ProgressOfCommands : public testing::Test
{
 protected:
  template <class Command, class Options>
  std::vector<Activity> run(Command command, const Options& options)
  {
    std::istringstream in{std::string(kProgressScript)};
    std::ostringstream out;
    std::ostringstream err;
    record_.activities.clear();
    record_.counts.clear();
    EXPECT_EQ(command(options, in, out, err, &record_), commands::kAnswered) << err.str();
    return record_.activities;
  }

  TemporaryFolder folder_;
  ProgressRecord record_;
  std::string script_ = folder_.write("script", kProgressScript);
};

TEST_F(ProgressOfCommands, NamesEachActivityInItsOrder)
{
  using enum Activity;
  using Activities = std::vector<Activity>;
  commands::SolveOptions solve;
  solve.file = script_;
  EXPECT_EQ(run(commands::run_solve, solve),
            (Activities{kReading, kEliminating, kSolving, kExtending, kChecking, kPrinting}));
  solve.file = "-";
  solve.method.solver_command = "echo unsat";
  EXPECT_EQ(run(commands::run_solve, solve),
            (Activities{kWaiting, kReading, kEliminating, kSolving, kPrinting}));

  const std::string trail = folder_.get_file("trail");
  EXPECT_EQ(run(commands::run_simplify, commands::SimplifyOptions{script_, "-", trail}),
            (Activities{kReading, kEliminating, kPrinting}));
  EXPECT_EQ(run(commands::run_simplify, commands::SimplifyOptions{script_, folder_.get_file("rest"), trail}),
            (Activities{kReading, kEliminating, kWriting}));
  EXPECT_EQ(run(commands::run_simplify, commands::SimplifyOptions{script_, folder_.get_file("rest"), "-"}),
            (Activities{kReading, kEliminating, kPrinting}));

  const std::string model =
      folder_.write("model", "((define-fun x () (_ BitVec 4) #x7)(define-fun y () (_ BitVec 4) #x9))");
  EXPECT_EQ(run(commands::run_extend, commands::ExtendOptions{script_, trail, model}),
            (Activities{kReading, kExtending, kChecking, kPrinting}));
  EXPECT_EQ(run(commands::run_check, commands::CheckOptions{"-", model}),
            (Activities{kWaiting, kReading, kChecking, kPrinting}));
  EXPECT_EQ(run(commands::run_dot, commands::DotOptions{script_}),
            (Activities{kReading, kEliminating, kPrinting}));

  const std::vector<std::string> requests = {
      folder_.write("requests", "(declare-const p Bool)(assert (not (and p p)))")};
  EXPECT_EQ(run(commands::run_invert, requests), (Activities{kReading, kPrinting}));
}

TEST_F(ProgressOfCommands, HasTheNumberOfTermsThatAreLeftToSolve)
{
  commands::SolveOptions solve;
  solve.file = script_;
  run(commands::run_solve, solve);
  // What is left is (= (bvurem x #x5) #x2): five terms.
  EXPECT_NE(
      std::find(record_.counts.begin(), record_.counts.end(), std::pair(Activity::kSolving, std::size_t{5})),
      record_.counts.end());
}

}  // namespace
}  // namespace lumo::test
