// The program without Z3: this test links no_builtin_solver.cpp in place of builtin_solver.cpp.

#include <string>

#include <gtest/gtest.h>

#include "lumo/commands/run_solve.h"
#include "lumo/solvers/builtin_solver.h"
#include "tests/commands/subcommand_run.h"

namespace lumo::test {
namespace {

constexpr const char* kScript = "(declare-const x (_ BitVec 8))(assert (bvult x (bvmul x x)))";

TEST(NoBuiltinSolver, IsToldBeforeTheScriptIsRead)
{
  commands::SolveOptions options;
  options.file = "/nowhere/no-such-file";
  const SubcommandRun run = test::run(commands::run_solve, options);
  EXPECT_EQ(run.status, commands::kFailed);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "lumo: this lumo was built without Z3, so --solver COMMAND must say which solver to start\n");
}

TEST(NoBuiltinSolver, CannotConfirmUnsat)
{
  commands::SolveOptions options;
  options.file = "-";
  options.method.solver_command = "cat > /dev/null; echo unsat";
  options.method.certification.is_wanted = true;
  const SubcommandRun refused = test::run(commands::run_solve, options, kScript);
  EXPECT_EQ(refused.status, commands::kFailed);
  EXPECT_EQ(
      refused.err,
      "lumo: this lumo was built without Z3, so --checker COMMAND must say which solver confirms unsat\n");
  options.method.certification.checker_command = options.method.solver_command;
  EXPECT_EQ(test::run(commands::run_solve, options, kScript).out, "unsat\n");
}

TEST(NoBuiltinSolver, LeavesCommandsAlone)
{
  commands::SolveOptions options;
  options.file = "-";
  options.method.solver_command = "cat > /dev/null; echo unsat";
  const SubcommandRun run = test::run(commands::run_solve, options, kScript);
  EXPECT_EQ(run.status, commands::kAnswered);
  EXPECT_EQ(run.out, "unsat\n");
  EXPECT_EQ(run.err, "");
}

TEST(NoBuiltinSolver, IsAnErrorOfTheSolver)
{
  TermManager mgr;
  EXPECT_FALSE(solvers::has_builtin_solver());
  EXPECT_THROW(static_cast<void>(solvers::solve_with_builtin(mgr, {}, {})), solvers::SolverError);
  EXPECT_THROW(static_cast<void>(solvers::solve_text_with_builtin("", {})), solvers::SolverError);
}

}  // namespace
}  // namespace lumo::test
