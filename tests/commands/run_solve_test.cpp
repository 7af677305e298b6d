#include "lumo/commands/run_solve.h"

#include <fstream>
#include <limits>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/commands/subcommand_run.h"

namespace lumo::test {
namespace {

using commands::SolveOptions;

/// A command that ignores its input
std::string make_solver(const std::string& output) { return "cat > /dev/null; printf '" + output + "'"; }

/// x occurs twice, y and z once; u does not occur.
constexpr const char* kSolveScript =
    "(declare-const z (_ BitVec 8))\n"
    "(declare-const u Bool)\n"
    "(declare-const x (_ BitVec 8))\n"
    "(declare-const |y y| (_ BitVec 8))\n"
    "(assert (= (bvadd z x) #x0c))\n"
    "(assert (bvult (bvurem x #x07) (bvmul x #x03)))\n"
    "(assert (= |y y| (bvurem x #x05)))\n"
    "(check-sat)\n";

/// All of it is eliminated.
constexpr const char* kFree =
    "(declare-const x (_ BitVec 8))\n"
    "(declare-const y (_ BitVec 8))\n"
    "(assert (= (bvadd x y) #x05))\n";

SolveOptions make_options()
{
  SolveOptions options;
  options.file = "-";
  return options;
}

SubcommandRun solve(const SolveOptions& options, const std::string& script)
{
  return run(commands::run_solve, options, script);
}

TEST(RunSolve, PrintsTheAnswerAlone)
{
  const SubcommandRun sat = solve(make_options(), kSolveScript);
  EXPECT_EQ(sat.status, commands::kAnswered);
  EXPECT_EQ(sat.out, "sat\n");
  EXPECT_EQ(sat.err, "");
  const SubcommandRun unsat =
      solve(make_options(), "(declare-const x (_ BitVec 8))(assert (bvult (bvurem x x) (bvsub x x)))");
  EXPECT_EQ(unsat.status, commands::kAnswered);
  EXPECT_EQ(unsat.out, "unsat\n");
  EXPECT_EQ(unsat.err, "");
}

TEST(RunSolve, PrintsTheModelOfAllConstantsInTheirOrder)
{
  SolveOptions options = make_options();
  options.wants_model = true;
  options.method.solver_command = make_solver("sat\\n((define-fun x () (_ BitVec 8) #x0a))\\n");
  const SubcommandRun run = solve(options, kSolveScript);
  EXPECT_EQ(run.status, commands::kAnswered);
  EXPECT_EQ(run.out,
            "sat\n"
            "(\n"
            "  (define-fun z () (_ BitVec 8) #x02)\n"
            "  (define-fun u () Bool false)\n"
            "  (define-fun x () (_ BitVec 8) #x0a)\n"
            "  (define-fun |y y| () (_ BitVec 8) #x00)\n"
            ")\n");
  EXPECT_EQ(run.err, "");
}

TEST(RunSolve, PrintsNoModelIfThereIsNone)
{
  SolveOptions options = make_options();
  options.wants_model = true;
  for (const std::string answer : {"unsat", "unknown"}) {
    options.method.solver_command = make_solver(answer + "\\n");
    const SubcommandRun run = solve(options, kSolveScript);
    EXPECT_EQ(run.status, commands::kAnswered);
    EXPECT_EQ(run.out, answer + "\n");
    EXPECT_EQ(run.err, "");
  }
}

TEST(RunSolve, StartsNoSolverIfNothingIsLeftToAsk)
{
  SolveOptions options = make_options();
  options.method.solver_command = "exit 1";
  for (const std::string script : {kFree, "", "(assert true)(declare-const p Bool)(assert p)"})
    EXPECT_EQ(solve(options, script).out, "sat\n") << script;
  EXPECT_EQ(solve(options, std::string(kFree) + "(assert false)").out, "unsat\n");

  options.method.eliminates = false;
  EXPECT_EQ(solve(options, "(assert true)").out, "sat\n");
  EXPECT_EQ(solve(options, std::string(kFree) + "(assert false)").out, "unsat\n");
  EXPECT_EQ(solve(options, kFree).status, commands::kFailed);
}

TEST(RunSolve, CanDoWithoutEliminating)
{
  SolveOptions options = make_options();
  options.wants_model = true;
  options.method.eliminates = false;
  options.method.solver_command =
      make_solver("sat\\n((define-fun x () (_ BitVec 8) #x02)(define-fun y () (_ BitVec 8) #x03))\\n");
  EXPECT_EQ(solve(options, kFree).out,
            "sat\n(\n  (define-fun x () (_ BitVec 8) #x02)\n  (define-fun y () (_ BitVec 8) #x03)\n)\n");
}

TEST(RunSolve, GivesNoAnswerIfTheModelDoesNotPassTheCheck)
{
  SolveOptions options = make_options();
  for (const bool eliminates : {true, false}) {
    options.method.eliminates = eliminates;
    for (const bool wants_json : {true, false}) {
      options.wants_json = wants_json;
      options.wants_statistics = true;
      options.method.solver_command = make_solver("sat\\n((define-fun x () (_ BitVec 8) #x00))\\n");
      const SubcommandRun run = solve(options,
                                      "(declare-const y Bool)(declare-const x (_ BitVec 8))\n"
                                      "(assert (= (bvurem x #x05) x))\n"
                                      " (assert (bvult (bvurem x #x07) (bvurem x #x06)))\n");
      EXPECT_EQ(run.status, commands::kCheckFailed);
      EXPECT_EQ(run.out, "");
      EXPECT_EQ(
          run.err,
          "<stdin>:3:2: this assertion is false under the extended model, and the solver's model does not "
          "satisfy what the solver was asked, so there is no answer\n");
    }
  }
}

TEST(RunSolve, FailsIfTheSolverDoes)
{
  SolveOptions options = make_options();
  for (const std::string& command :
       {make_solver("") + "; exit 1", make_solver("perhaps\\n"), make_solver("sat\\n(no model)\\n"),
        std::string("kill -9 $$"), std::string("/no/such/solver"), std::string()})
  {
    options.method.solver_command = command;
    const SubcommandRun run = solve(options, kSolveScript);
    EXPECT_EQ(run.status, commands::kFailed) << command;
    EXPECT_EQ(run.out, "") << command;
    EXPECT_TRUE(run.err.starts_with("<stdin>: ")) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  }
}

TEST(RunSolve, IsUnknownAfterTheTimeLimit)
{
  SolveOptions options = make_options();
  options.method.seconds = 0.05;
  options.method.solver_command = "sleep 60";
  const SubcommandRun text = solve(options, kSolveScript);
  EXPECT_EQ(text.status, commands::kAnswered);
  EXPECT_EQ(text.out, "unknown\n");
  EXPECT_EQ(text.err, "<stdin>: the answer is unknown, since the time limit of 0.05 s was reached\n");
  options.wants_json = true;
  const SubcommandRun json = solve(options, kSolveScript);
  EXPECT_TRUE(json.out.starts_with(
      R"({"answer": "unknown", "reason": "the time limit of 0.05 s was reached", "stats": {)"))
      << json.out;
  EXPECT_EQ(json.err, text.err);
}

TEST(RunSolve, RefusesATimeLimitThatIsNone)
{
  for (const double seconds :
       {0.0, -1.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
  {
    SolveOptions options = make_options();
    options.method.seconds = seconds;
    const SubcommandRun run = solve(options, kSolveScript);
    EXPECT_EQ(run.status, commands::kFailed);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "lumo: the time limit must be a number of seconds above 0\n");
  }
}

TEST(RunSolve, PrintsStatisticsBesideTheAnswer)
{
  SolveOptions options = make_options();
  options.wants_statistics = true;
  const SubcommandRun run = solve(options, kFree);
  EXPECT_EQ(run.out, "sat\n");
  EXPECT_TRUE(
      run.err.starts_with("size                  before       after\n"
                          "assertions                 1           0\n"
                          "terms                      5           0\n"
                          "applications               2           0\n"
                          "constants                  2           0\n"
                          "eliminated                 2\n"
                          "  =                        1\n"
                          "  bvadd                    1\n"
                          "steps                      2\n"
                          "seconds\n"
                          "  read   "))
      << run.err;
}

TEST(RunSolve, PrintsOneJsonObject)
{
  SolveOptions options = make_options();
  options.wants_json = true;
  options.wants_statistics = true;
  const SubcommandRun answer = solve(options, kFree);
  EXPECT_TRUE(answer.out.starts_with(R"({"answer": "sat", "stats": {"before": {"assertions": 1, )"))
      << answer.out;
  EXPECT_TRUE(answer.out.ends_with("}}}\n")) << answer.out;
  EXPECT_EQ(answer.err, "");

  options.wants_model = true;
  const SubcommandRun model = solve(options,
                                    "(declare-const |x\"| (_ BitVec 8))(declare-const p Bool)\n"
                                    "(assert (= |x\"| #x07))");
  EXPECT_TRUE(model.out.starts_with(
      R"-({"answer": "sat", "model": [{"constant": "x\"", "sort": "(_ BitVec 8)", "value": "#x07"}, )-"
      R"-({"constant": "p", "sort": "Bool", "value": "false"}], "stats": {)-"))
      << model.out;
  EXPECT_TRUE(solve(options, "(assert false)").out.starts_with(R"({"answer": "unsat", "stats": {)"));
}

TEST(RunSolve, NamesWhatIsWrongWithTheScript)
{
  const SubcommandRun run = solve(make_options(), "(declare-const x Bool)\n(minimize)");
  EXPECT_EQ(run.status, commands::kFailed);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(
      run.err,
      "<stdin>:2:1: the command minimize was found, but only declarations, definitions, assertions and one "
      "check-sat were expected\n");
}

TEST(RunSolve, FailsIfTheAnswerCannotBeWritten)
{
  std::istringstream in(kSolveScript);
  std::ofstream out("/dev/full");
  std::ostringstream err;
  EXPECT_EQ(commands::run_solve(make_options(), in, out, err), commands::kFailed);
  EXPECT_EQ(err.str(), "<stdout>: this cannot be written: No space left on device\n");
}

}  // namespace
}  // namespace lumo::test
