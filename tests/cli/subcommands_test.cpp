// The subcommands in combination, and the messages about wrong options and files.

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/run_lumo.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

/// The first assertion is eliminated; the values 2, 7 and 12 of x satisfy the others.
constexpr std::string_view kScript =
    "(declare-const y (_ BitVec 4))\n"
    "(declare-const x (_ BitVec 4))\n"
    "(declare-const unused Bool)\n"
    "(assert (= (bvadd y #x1) (bvmul x x)))\n"
    "(assert (= (bvurem x #x5) #x2))\n"
    "(check-sat)\n";
constexpr std::string_view kModel =
    "(\n"
    "  (define-fun y () (_ BitVec 4) #x0)\n"
    "  (define-fun x () (_ BitVec 4) #x7)\n"
    "  (define-fun unused () Bool false)\n"
    ")\n";
constexpr std::string_view kSolverModel = "sat\n((define-fun x () (_ BitVec 4) #x7))\n";

struct CommandRow
{
  std::vector<std::string> args;
  int status;
  std::string out;
  std::string err;
};

void expect_rows(const std::vector<CommandRow>& rows, const TemporaryFolder& folder)
{
  for (const CommandRow& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.args));
    const Outcome outcome = run_lumo(row.args, folder.get_path(), kScript);
    EXPECT_EQ(outcome.status, row.status);
    EXPECT_EQ(outcome.out, row.out);
    EXPECT_EQ(outcome.err, row.err);
  }
}

TEST(Subcommands, AnswerWithStatusAndTexts)
{
  const TemporaryFolder folder;
  folder.write("script", kScript);
  folder.write("answer", kSolverModel);
  folder.write("wrong", "((define-fun x () (_ BitVec 4) #x3))");
  folder.write("sorts", "((define-fun x () Bool true))");
  folder.write("int.smt2", "(declare-const n Integer)");
  folder.write("levels.smt2",
               "(declare-const x (_ BitVec 4))\n(push 1)\n(assert false)\n(check-sat)\n(pop 1)\n"
               "(assert (= x #x3))\n(check-sat)\n");
  const std::string violated =
      "levels.smt2:6:1: this assertion is false under the model; the values of its constants are\n  x = "
      "#x7\n";
  folder.write("twice.smt2", "(check-sat)(check-sat)");
  const std::string model(kModel);
  const std::string missing = "none: this cannot be read: No such file or directory\n";

  expect_rows(
      {
          {{"simplify", "script", "-o", "rest", "--trail", "trail"}, 0, "", ""},
          {{"solve", "script"}, 0, "sat\n", ""},
          {{"solve", "-"}, 0, "sat\n", ""},
          {{"solve", "script", "--model", "--solver", "cat answer"}, 0, "sat\n" + model, ""},
          {{"solve", "script", "--solver", "echo unknown"}, 0, "unknown\n", ""},
          {{"solve", "script", "--solver", "sleep 60", "--timeout", "0.1"},
           0,
           "unknown\n",
           "script: the answer is unknown, since the time limit of 0.1 s was reached\n"},
          {{"solve", "script", "--model", "--solver", "echo sat; cat wrong"},
           3,
           "",
           "script:5:1: this assertion is false under the extended model, and the solver's model does not "
           "satisfy "
           "what the solver was asked, so there is no answer\n"},
          {{"solve", "none"}, 2, "", missing},
          {{"solve", "int.smt2"},
           2,
           "",
           "int.smt2:1:18: the symbol Integer was found, but a declared sort or one of a theory was "
           "expected\n"},
          {{"solve", "twice.smt2"}, 0, "sat\nsat\n", ""},
          {{"solve", "twice.smt2", "--json"},
           2,
           "",
           "lumo: twice.smt2 makes several queries, but --json can tell of one only\n"},
          {{"solve", "levels.smt2", "--model"},
           0,
           "unsat\nsat\n(\n  (define-fun x () (_ BitVec 4) #x3)\n)\n",
           ""},
          {{"check", "levels.smt2", "--model", "answer"}, 1, "invalid\n", violated},
          {{"simplify", "levels.smt2", "--query", "3"},
           2,
           "",
           "levels.smt2: query 3 was asked for, but the queries have the numbers 1 to 2\n"},
          {{"simplify", "levels.smt2", "--query", "1"},
           0,
           "(set-option :produce-models true)\n(set-logic QF_BV)\n(assert false)\n(check-sat)\n(get-model)\n",
           ""},
          {{"solve"}, 2, "", "lumo: FILE is required; see lumo solve --help\n"},
          {{"solve", "script", "--timeout", "soon"},
           2,
           "",
           "lumo: --timeout is given soon, but a number was expected; see lumo solve --help\n"},
          {{"solve", "script", "--timeout", "0"},
           2,
           "",
           "lumo: the time limit must be a number of seconds above 0\n"},
          {{"extend", "script", "--trail", "trail", "--model", "answer"}, 0, model, ""},
          {{"extend", "script", "--trail", "trail", "--model", "wrong"},
           3,
           "",
           "script:5:1: this assertion is false under the extended model; the model or the trail may belong "
           "to "
           "another script\n"},
          {{"extend", "script", "--trail", "none", "--model", "answer"}, 2, "", missing},
          {{"extend", "script", "--trail", "trail"},
           2,
           "",
           "lumo: --model is required; see lumo extend --help\n"},
          {{"extend", "script", "--model", "answer"},
           2,
           "",
           "lumo: --trail is required; see lumo extend --help\n"},
          {{"check", "script", "--model", "wrong"},
           1,
           "invalid\n",
           "script:4:1: this assertion is false under the model; the values of its constants are\n"
           "  y = #x0, which the model leaves out\n"
           "  x = #x3\n"},
          {{"check", "script", "--model", "sorts"},
           2,
           "",
           "sorts:1:19: the sort Bool was found, but (_ BitVec 4), the sort of the constant x, was "
           "expected\n"},
          {{"check", "-", "--model", "-"},
           2,
           "",
           "lumo: several files are -, but the standard input can be read only once\n"},
          {{"check", "script"}, 2, "", "lumo: --model is required; see lumo check --help\n"},
          {{"simplify", "script", "-o", "/dev/full"},
           2,
           "",
           "/dev/full: this cannot be written: No space left on device\n"},
          {{"simplify", "script", "-o", "none/rest"},
           2,
           "",
           "none/rest: this cannot be written: No such file or directory\n"},
          {{"dot", "none"}, 2, "", missing},
      },
      folder);
}

TEST(Subcommands, AcceptTheModelThatSolvePrints)
{
  const TemporaryFolder folder;
  folder.write("script", kScript);
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{}, std::vector<std::string>{"--no-elimination"}})
  {
    std::vector<std::string> args = {"solve", "script", "--model"};
    args.insert(args.end(), options.begin(), options.end());
    folder.write("model", run_lumo(args, folder.get_path()).out);
    EXPECT_EQ(run_lumo({"check", "script", "--model", "model"}, folder.get_path()).out, "valid\n");
  }
}

TEST(Subcommands, FailWithTheSolver)
{
  const TemporaryFolder folder;
  folder.write("script", kScript);
  for (const std::string solver :
       {"exit 3", "kill -9 $$", "echo maybe", "/no/such/program", "echo sat", "true"})
  {
    SCOPED_TRACE(solver);
    const Outcome outcome = run_lumo({"solve", "script", "--solver", solver}, folder.get_path());
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.err.starts_with("script: the solver \"")) << outcome.err;
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
  }
}

TEST(Subcommands, FailIfTheirOutputCannotBeWritten)
{
  const TemporaryFolder folder;
  folder.write("script", kScript);
  folder.write("answer", kSolverModel);
  ASSERT_EQ(run_lumo({"simplify", "script", "--trail", "trail"}, folder.get_path()).status, 0);
  for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
           {"solve", "script"},
           {"solve", "script", "--json"},
           {"simplify", "script"},
           {"extend", "script", "--trail", "trail", "--model", "answer"},
           {"check", "script", "--model", "answer"},
           {"dot", "script"},
       })
  {
    SCOPED_TRACE(args[0]);
    const Outcome full = run_lumo(args, folder.get_path(), "", Output::kFullDevice);
    EXPECT_EQ(full.status, 2);
    EXPECT_EQ(full.err, "<stdout>: this cannot be written: No space left on device\n");
    const Outcome pipe = run_lumo(args, folder.get_path(), "", Output::kUnreadPipe);
    EXPECT_EQ(pipe.status, -SIGPIPE);
    EXPECT_EQ(pipe.err, "");
  }
}

TEST(Subcommands, ExplainThemselves)
{
  const TemporaryFolder folder;
  const std::string all = run_lumo({"--help"}, folder.get_path()).out;
  for (const std::string subcommand : {"solve", "simplify", "extend", "check", "dot", "invert"}) {
    EXPECT_NE(all.find("\n  " + subcommand + " "), std::string::npos) << subcommand;
    const Outcome help = run_lumo({subcommand, "--help"}, folder.get_path());
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Usage: lumo " + subcommand), std::string::npos) << help.out;
  }
}

/// Runs a solver on the rest of a script, and expects that its model is extended to one of the script.
[[maybe_unused]] void expect_round_trip(const std::string& solver, const std::vector<std::string>& options,
                                        const TemporaryFolder& folder)
{
  const Outcome simplified =
      run_lumo({"simplify", "script", "-o", "rest", "--trail", "trail"}, folder.get_path());
  ASSERT_EQ(simplified.status, 0) << simplified.err;
  std::vector<std::string> args = options;
  args.emplace_back("rest");
  const Outcome answer = run_program(solver, args, folder.get_path());
  ASSERT_TRUE(answer.out.starts_with("sat\n")) << answer.out << answer.err;
  const Outcome model =
      run_lumo({"extend", "script", "--trail", "trail", "--model", "-"}, folder.get_path(), answer.out);
  ASSERT_EQ(model.status, 0) << model.err;
  const Outcome verdict = run_lumo({"check", "script", "--model", "-"}, folder.get_path(), model.out);
  EXPECT_EQ(verdict.out, "valid\n") << verdict.err;
}

/// Two constants for each name, one that is used more than once and one that is free
std::string make_script_of_names(const std::vector<std::string>& names)
{
  std::string script;
  for (const std::string& name : names) {
    script += "(declare-const |" + name + "| (_ BitVec 8))\n(declare-const |" + name +
              " is free| (_ BitVec 8))\n(assert (bvult |" + name + " is free| (bvurem |" + name +
              "| #x0b)))\n(assert (= (bvurem |" + name + "| #x77) #x0c))\n";
  }
  return script;
}

/// Names with each printable character, and others that solvers or lumo itself might misread. Left
/// out are names that solvers reserve: with a dot or an at sign at the front, and some names of one character.
std::vector<std::string> make_names()
{
  std::vector<std::string> names = {"",      "a b", "a\nb",  "let",  "assert", "true1", "0a", ";x",
                                    "\"q\"", "é",   "u!0",   "u!1",  "s!1",    "a=",    "a_", "a.",
                                    "a@",    "a!",  "u!001", "#x07", "x:y",    "bv7"};
  for (char c = ' '; c <= '~'; ++c) {
    if (std::string_view("|\\.!_@=").find(c) == std::string_view::npos) names.emplace_back(1, c);
  }
  return names;
}

#ifdef Z3_PROGRAM
TEST(Subcommands, WorkTogetherWithZ3)
{
  const TemporaryFolder folder;
  folder.write("script", kScript);
  expect_round_trip(Z3_PROGRAM, {}, folder);
  EXPECT_EQ(run_lumo({"solve", "script", "--solver", Z3_PROGRAM " -in"}, folder.get_path()).out, "sat\n");
}

TEST(Subcommands, KeepNamesThroughZ3)
{
  const TemporaryFolder folder;
  folder.write("script", make_script_of_names(make_names()));
  expect_round_trip(Z3_PROGRAM, {}, folder);
  EXPECT_EQ(run_lumo({"solve", "script", "--solver", Z3_PROGRAM " -in"}, folder.get_path()).out, "sat\n");
}
#endif

#ifdef CVC5_PROGRAM
TEST(Subcommands, WorkTogetherWithCvc5)
{
  const TemporaryFolder folder;
  folder.write("script", kScript);
  expect_round_trip(CVC5_PROGRAM, {"--lang", "smt2"}, folder);
  EXPECT_EQ(run_lumo({"solve", "script", "--solver", CVC5_PROGRAM " --lang smt2"}, folder.get_path()).out,
            "sat\n");
}

TEST(Subcommands, KeepNamesThroughCvc5)
{
  const TemporaryFolder folder;
  folder.write("script", make_script_of_names(make_names()));
  expect_round_trip(CVC5_PROGRAM, {"--lang", "smt2"}, folder);
}
#endif

TEST(Subcommands, KeepNamesWithinOneProcess)
{
  const TemporaryFolder folder;
  folder.write("script", make_script_of_names(make_names()));
  folder.write("model", run_lumo({"solve", "script", "--model"}, folder.get_path()).out);
  EXPECT_EQ(run_lumo({"check", "script", "--model", "model"}, folder.get_path()).out, "valid\n");
}

}  // namespace
}  // namespace lumo::test
