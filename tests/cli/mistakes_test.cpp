// The messages about mistyped subcommands, options and files.

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/run_lumo.h"

namespace lumo::test {
namespace {

struct MistakeRow
{
  std::vector<std::string> args;
  std::string err;
};

void expect_messages(const std::vector<MistakeRow>& rows, const TemporaryFolder& folder)
{
  for (const MistakeRow& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.args));
    const Outcome outcome = run_lumo(row.args, folder.get_path());
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, row.err + "\n");
  }
}

TEST(Mistakes, InSubcommandsGetTheNearest)
{
  const TemporaryFolder folder;
  folder.write("problem", "");
  const std::string help = "; see lumo --help";
  expect_messages(
      {
          {{"solv", "problem"}, "lumo: solv is not a subcommand; perhaps solve was meant" + help},
          {{"sovle", "problem"}, "lumo: sovle is not a subcommand; perhaps solve was meant" + help},
          {{"Check", "problem"}, "lumo: Check is not a subcommand; perhaps check was meant" + help},
          {{"simp"}, "lumo: simp is not a subcommand; perhaps simplify was meant" + help},
          {{"revert", "problem"}, "lumo: revert is not a subcommand; perhaps invert was meant" + help},
          {{"dance"}, "lumo: dance is not a subcommand" + help},
          {{""}, "lumo: the name of the subcommand is empty" + help},
          {{"a\nb"}, "lumo: a?b is not a subcommand" + help},
          {{"solv", "--modle"}, "lumo: solv is not a subcommand; perhaps solve was meant" + help},
      },
      folder);
}

TEST(Mistakes, ThatLeaveTheSubcommandOutGetSolve)
{
  const TemporaryFolder folder;
  folder.write("problem", "");
  const std::string help = " was meant; see lumo --help";
  expect_messages(
      {
          {{"problem"}, "lumo: problem is not a subcommand; perhaps lumo solve problem" + help},
          {{"problem", "--model"}, "lumo: problem is not a subcommand; perhaps lumo solve problem" + help},
          {{"none.smt2"}, "lumo: none.smt2 is not a subcommand; perhaps lumo solve none.smt2" + help},
          {{"-"}, "lumo: - is not a subcommand; perhaps lumo solve -" + help},
      },
      folder);
}

TEST(Mistakes, InOptionsGetTheNearestOfTheSubcommand)
{
  const TemporaryFolder folder;
  folder.write("problem", "");
  expect_messages(
      {
          {{"solve", "--modle", "problem"},
           "lumo: --modle is not an option of solve; perhaps --model was meant; see lumo solve --help"},
          {{"solve", "problem", "--time=3"},
           "lumo: --time is not an option of solve; perhaps --timeout was meant; see lumo solve --help"},
          {{"solve", "--modle"},
           "lumo: --modle is not an option of solve; perhaps --model was meant; see lumo solve --help"},
          {{"solve", "problem", "-model"},
           "lumo: -model is not an option of solve; perhaps --model was meant; see lumo solve --help"},
          {{"simplify", "problem", "--ouput", "rest"},
           "lumo: --ouput is not an option of simplify; perhaps --output was meant; see lumo simplify "
           "--help"},
          {{"extend", "problem", "--trial", "trail"},
           "lumo: --trial is not an option of extend; perhaps --trail was meant; see lumo extend --help"},
          {{"dot", "problem", "--trail", "trail"},
           "lumo: --trail is not an option of dot; see lumo dot --help"},
          {{"invert", "problem", "-x"}, "lumo: -x is not an option of invert; see lumo invert --help"},
          {{"--versoin"},
           "lumo: --versoin is not an option of lumo itself; perhaps --version was meant; see lumo --help"},
          {{"--model", "solve", "problem"}, "lumo: --model is not an option of lumo itself; see lumo --help"},
          {{"---"}, "lumo: --- is not an option of lumo itself; see lumo --help"},
      },
      folder);
}

TEST(Mistakes, InValuesAreNamed)
{
  const TemporaryFolder folder;
  folder.write("problem", "");
  const std::string help = "; see lumo solve --help";
  const std::string simplify_help = "; see lumo simplify --help";
  expect_messages(
      {
          {{"solve", "problem", "--timeout"}, "lumo: --timeout needs a value, SECONDS" + help},
          {{"solve", "problem", "--timeout="}, "lumo: --timeout needs a value, SECONDS" + help},
          {{"solve", "problem", "--solver"}, "lumo: --solver needs a value, COMMAND" + help},
          {{"simplify", "problem", "-o"}, "lumo: --output needs a value, REST" + simplify_help},
          {{"simplify", "problem", "-o", "a", "-o"}, "lumo: --output needs a value, REST" + simplify_help},
          {{"simplify", "problem", "-o", "a", "-o", "b"},
           "lumo: --output is given more than once" + simplify_help},
          {{"solve", "problem", "--timeout", "1", "--timeout", "2"},
           "lumo: --timeout is given more than once" + help},
          {{"solve", "problem", "--timeout", "3s"},
           "lumo: --timeout is given 3s, but a number was expected" + help},
          {{"solve", "problem", "--timeout", "a\nb"},
           "lumo: --timeout is given a?b, but a number was expected" + help},
          {{"solve", "problem", "--model=file"}, "lumo: --model takes no value" + help},
          {{"solve", "problem", "--json=false"}, "lumo: --json takes no value" + help},
          {{"dot", "problem", "--after=2"}, "lumo: --after takes no value; see lumo dot --help"},
          {{"solve", "problem", "--model", "file"}, "lumo: file is one argument too many" + help},
      },
      folder);
}

TEST(Mistakes, OfEmptyValuesAreNamed)
{
  const TemporaryFolder folder;
  folder.write("problem", "");
  const std::string file = " is empty, but the name of a file was expected; see lumo ";
  expect_messages(
      {
          {{"solve", ""}, "lumo: the value of FILE" + file + "solve --help"},
          {{"solve", "problem", "--timeout", ""},
           "lumo: the value of --timeout is empty, but a number was expected; see lumo solve --help"},
          {{"solve", "problem", "--solver", ""},
           "lumo: the value of --solver is empty, but a command was expected; see lumo solve --help"},
          {{"simplify", "problem", "-o", ""}, "lumo: the value of --output" + file + "simplify --help"},
          {{"simplify", "problem", "--trail", ""}, "lumo: the value of --trail" + file + "simplify --help"},
          {{"extend", "problem", "--trail", "problem", "--model", ""},
           "lumo: the value of --model" + file + "extend --help"},
          {{"check", "problem", "--model", ""}, "lumo: the value of --model" + file + "check --help"},
          {{"dot", ""}, "lumo: the value of FILE" + file + "dot --help"},
          {{"invert", "problem", ""}, "lumo: the value of FILE" + file + "invert --help"},
      },
      folder);
}

TEST(Mistakes, InFilesGetTheNearestThatIsThere)
{
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.get_path() / "examples/solve");
  folder.write("examples/solve/problem.smt2", "");
  folder.write("model.txt", "()");
  const std::string missing = ": this cannot be read: No such file or directory";
  const std::string path = "examples/solve/problem.smt2";
  expect_messages(
      {
          {{"solve", "exmples/sovle/porblem.smt2"},
           "exmples/sovle/porblem.smt2" + missing + "; perhaps " + path + " was meant"},
          {{"simplify", "./examples/solve/problem"},
           "./examples/solve/problem" + missing + "; perhaps ./" + path + " was meant"},
          {{"check", path, "--model", "modl.txt"}, "modl.txt" + missing + "; perhaps model.txt was meant"},
          {{"dot", "examples/solve/other.smt2"}, "examples/solve/other.smt2" + missing},
          {{"invert", "nowhere/problem.smt2", "model.text"},
           "nowhere/problem.smt2" + missing + "\nmodel.text" + missing + "; perhaps model.txt was meant"},
      },
      folder);
}

}  // namespace
}  // namespace lumo::test
