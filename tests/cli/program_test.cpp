// The interface of the built program: exit status, standard output and standard error.

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/run_lumo.h"

namespace lumo::test {
namespace {

constexpr std::string_view kGood =
    "(declare-const x (_ BitVec 8))\n(declare-const y (_ BitVec 8))\n(assert (= (bvadd x y) #x05))\n";
constexpr std::string_view kGoodAnswer =
    "(define-fun x () (_ BitVec 8) #x05)\n(define-fun y () (_ BitVec 8) #x00)\n";

struct ProgramRow
{
  std::vector<std::string> args;
  int status;
  std::string out;
  std::string err;
};

TEST(Program, AnswersWithStatusAndTexts)
{
  const TemporaryFolder folder;
  folder.write("good.smt2", kGood);
  folder.write("half.smt2", "(declare-const p Bool)(assert p)\n(assert (not p))");
  folder.write("syntax.smt2", "(declare-const p Bool)\n(assert (not q))");
  folder.write("sort.smt2", "(declare-const n Int)");
  folder.write("two.smt2", "(check-sat)\n  (push 1)");
  folder.write("-dash.smt2", kGood);

  const std::string half_err =
      "half.smt2: assertion 1: this is the constant p alone, but an application of an operator was "
      "expected\n";
  const std::vector<ProgramRow> rows = {
      {{"invert", "good.smt2"}, 0, std::string(kGoodAnswer), ""},
      {{"invert", "-"}, 0, std::string(kGoodAnswer), ""},
      {{"invert", "--", "-dash.smt2"}, 0, std::string(kGoodAnswer), ""},
      {{"invert", "half.smt2"}, 1, "(define-fun p () Bool false)\n", half_err},
      {{"invert", "half.smt2", "good.smt2"},
       1,
       "; half.smt2\n(define-fun p () Bool false)\n(reset)\n; good.smt2\n" + std::string(kGoodAnswer),
       half_err},
      {{"invert", "good.smt2", "syntax.smt2", "sort.smt2"},
       2,
       "",
       "syntax.smt2:2:14: the symbol q is not declared\n"
       "sort.smt2:1:18: the symbol Int was found, but the sort Bool or (_ BitVec w) was expected\n"},
      {{"invert", "two.smt2"},
       2,
       "",
       "two.smt2:2:3: a push was found, but only one level around one check-sat was expected\n"},
      {{"invert", "none.smt2"}, 2, "", "none.smt2: this cannot be read: No such file or directory\n"},
      {{"invert", "."}, 2, "", ".: this cannot be read: Is a directory\n"},
      {{}, 2, "", "lumo: a subcommand is required; see lumo --help\n"},
      {{"invert"}, 2, "", "lumo: FILE is required; see lumo invert --help\n"},
      {{"dot", "good.smt2", "half.smt2"},
       2,
       "",
       "lumo: half.smt2 is one argument too many; see lumo dot --help\n"},
      {{"--version"}, 0, "lumo " LUMO_VERSION "\n", ""},
  };
  for (const ProgramRow& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.args));
    const Outcome outcome = run_lumo(row.args, folder.get_path(), kGood);
    EXPECT_EQ(outcome.status, row.status);
    EXPECT_EQ(outcome.out, row.out);
    EXPECT_EQ(outcome.err, row.err);
  }
}

TEST(Program, ExplainsItself)
{
  const TemporaryFolder folder;
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"--help"}, std::vector<std::string>{"invert", "--help"}})
  {
    const Outcome outcome = run_lumo(args, folder.get_path());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.out.find("invert"), std::string::npos);
    EXPECT_NE(outcome.out.find("Exit status"), std::string::npos);
    EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos);
  }
}

TEST(Program, FailsIfItsOutputCannotBeWritten)
{
  const TemporaryFolder folder;
  const std::string full = "<stdout>: this cannot be written: No space left on device\n";
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"invert", "-"}, std::vector<std::string>{"--help"},
        std::vector<std::string>{"--version"}})
  {
    SCOPED_TRACE(args[0]);
    const Outcome outcome = run_lumo(args, folder.get_path(), kGood, Output::kFullDevice);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, full);
  }
  const Outcome closed = run_lumo({"invert", "-"}, folder.get_path(), kGood, Output::kClosed);
  EXPECT_EQ(closed.status, 2);
  EXPECT_EQ(closed.err, "<stdout>: this cannot be written: Bad file descriptor\n");
}

TEST(Program, EndsQuietlyWhenItsReaderHasGone)
{
  const TemporaryFolder folder;
  const Outcome outcome = run_lumo({"invert", "-"}, folder.get_path(), kGood, Output::kUnreadPipe);
  EXPECT_EQ(outcome.status, -SIGPIPE);
  EXPECT_EQ(outcome.err, "");
}

TEST(Program, NeedsNoOutputWithoutDefinitions)
{
  const TemporaryFolder folder;
  const Outcome outcome = run_lumo({"invert", "-"}, folder.get_path(), "(check-sat)", Output::kFullDevice);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
}

}  // namespace
}  // namespace lumo::test
