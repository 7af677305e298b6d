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

using commands::Phase;

struct ProgressRow
{
  Phase phase;
  std::size_t num_terms;
  double seconds;
  std::string text;
};

TEST(Progress, IsToldInWords)
{
  const std::vector<ProgressRow> rows = {
      {Phase::kRead, 0, 1.25, "reading: 1.2 s"},
      {Phase::kEliminate, 1200000, 3.4, "eliminating: 1,200,000 terms, 3.4 s"},
      {Phase::kSolve, 1, 0, "solving: 1 term, 0.0 s"},
      {Phase::kExtend, 999, 60, "extending: 999 terms, 60.0 s"},
      {Phase::kCheck, 1000, 3600, "checking: 1,000 terms, 3600.0 s"},
      {Phase::kCertify, 5, 2, "certifying: 5 terms, 2.0 s"},
      {Phase::kPrint, 0, 2, "printing: 2.0 s"},
      {Phase::kWrite, 123456, 2, "writing: 123,456 terms, 2.0 s"},
  };
  for (const ProgressRow& row : rows)
    EXPECT_EQ(make_progress_text(row.phase, row.num_terms, row.seconds), row.text);
}

/// Records the phases, each once if it was entered several times in a row.
class ProgressRecord : public commands::Progress
{
 public:
  void enter(Phase phase, std::size_t num_terms) override
  {
    if (phases.empty() || phases.back() != phase) phases.push_back(phase);
    counts.emplace_back(phase, num_terms);
  }

  std::vector<Phase> phases;
  std::vector<std::pair<Phase, std::size_t>> counts;
};

constexpr std::string_view kProgressScript =
    "(declare-const x (_ BitVec 4))\n(declare-const y (_ BitVec 4))\n"
    "(assert (= (bvurem x #x5) #x2))\n(assert (= (bvadd y x) #x0))\n";

class ProgressOfSubcommands : public testing::Test
{
 protected:
  template <class Subcommand, class Options>
  std::vector<Phase> run(Subcommand subcommand, const Options& options)
  {
    std::istringstream in{std::string(kProgressScript)};
    std::ostringstream out;
    std::ostringstream err;
    record_.phases.clear();
    record_.counts.clear();
    EXPECT_EQ(subcommand(options, in, out, err, &record_), commands::kAnswered) << err.str();
    return record_.phases;
  }

  TemporaryFolder folder_;
  ProgressRecord record_;
  std::string script_ = folder_.write("script", kProgressScript);
};

TEST_F(ProgressOfSubcommands, NamesEachPhaseInItsOrder)
{
  using enum Phase;
  using Phases = std::vector<Phase>;
  commands::SolveOptions solve;
  solve.file = script_;
  EXPECT_EQ(run(commands::run_solve, solve), (Phases{kRead, kEliminate, kSolve, kExtend, kCheck, kPrint}));
  solve.file = "-";
  solve.method.solver_command = "echo unsat";
  EXPECT_EQ(run(commands::run_solve, solve), (Phases{kWait, kRead, kEliminate, kSolve, kPrint}));

  const std::string trail = folder_.get_file("trail");
  EXPECT_EQ(run(commands::run_simplify, commands::SimplifyOptions{script_, "-", trail}),
            (Phases{kRead, kEliminate, kPrint}));
  EXPECT_EQ(run(commands::run_simplify, commands::SimplifyOptions{script_, folder_.get_file("rest"), trail}),
            (Phases{kRead, kEliminate, kWrite}));
  EXPECT_EQ(run(commands::run_simplify, commands::SimplifyOptions{script_, folder_.get_file("rest"), "-"}),
            (Phases{kRead, kEliminate, kPrint}));

  const std::string model =
      folder_.write("model", "((define-fun x () (_ BitVec 4) #x7)(define-fun y () (_ BitVec 4) #x9))");
  EXPECT_EQ(run(commands::run_extend, commands::ExtendOptions{script_, trail, model}),
            (Phases{kRead, kExtend, kCheck, kPrint}));
  EXPECT_EQ(run(commands::run_check, commands::CheckOptions{"-", model}),
            (Phases{kWait, kRead, kCheck, kPrint}));
  EXPECT_EQ(run(commands::run_dot, commands::DotOptions{script_}), (Phases{kRead, kEliminate, kPrint}));

  const std::vector<std::string> requests = {
      folder_.write("requests", "(declare-const p Bool)(assert (not (and p p)))")};
  EXPECT_EQ(run(commands::run_invert, requests), (Phases{kRead, kPrint}));
}

TEST_F(ProgressOfSubcommands, HasTheNumberOfTermsThatAreLeftToSolve)
{
  commands::SolveOptions solve;
  solve.file = script_;
  run(commands::run_solve, solve);
  // The rest is (= (bvurem x #x5) #x2): five terms.
  EXPECT_NE(std::find(record_.counts.begin(), record_.counts.end(), std::pair(Phase::kSolve, std::size_t{5})),
            record_.counts.end());
}

}  // namespace
}  // namespace lumo::test
