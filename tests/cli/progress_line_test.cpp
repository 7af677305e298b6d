// The status line on a terminal.

#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/run_lumo.h"
#include "tests/cli/terminal_process.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/waiting.h"

namespace lumo::test {
namespace {

using Screen = std::vector<std::string>;

/// Nothing of it is eliminated; it has five terms.
constexpr std::string_view kSolidScript = "(declare-const x (_ BitVec 4))\n(assert (= (bvurem x #x5) #x2))\n";
/// A solver that answers when the test allows it, and one that takes longer than the delay of the line
constexpr const char* kWaitingSolver = "while ! [ -e go ]; do sleep 0.05; done; ";
constexpr const char* kSlowSolver = "sleep 2; ";

std::vector<std::string> make_solve_args(const std::string& solver)
{
  return {"solve", "script", "--model", "--solver", solver};
}

class ProgressLineTest : public testing::Test
{
 protected:
  TemporaryFolder folder_;
  std::string script_ = folder_.write("script", kSolidScript);
};

TEST_F(ProgressLineTest, AppearsAndIsErasedBeforeTheAnswer)
{
  TerminalProcess lumo(
      LUMO_PROGRAM,
      make_solve_args(std::string(kWaitingSolver) + "echo sat; echo '((define-fun x () (_ BitVec 4) #x7))'"),
      folder_.get_path(), {});
  ASSERT_TRUE(lumo.wait_for_text("solving: 5 terms, ")) << lumo.get_text();
  EXPECT_EQ(show_on_screen(lumo.get_text()).size(), 1U);
  folder_.write("go", "");
  EXPECT_EQ(lumo.wait(), 0);
  EXPECT_EQ(show_on_screen(lumo.get_text()),
            (Screen{"sat", "(", "  (define-fun x () (_ BitVec 4) #x7)", ")", ""}));
}

TEST_F(ProgressLineTest, IsErasedBeforeMessages)
{
  TerminalProcess lumo(LUMO_PROGRAM, {"solve", "script", "--solver", std::string(kWaitingSolver) + "exit 3"},
                       folder_.get_path(), {"xterm", 200});
  ASSERT_TRUE(lumo.wait_for_text("solving: ")) << lumo.get_text();
  folder_.write("go", "");
  EXPECT_EQ(lumo.wait(), 2);
  EXPECT_EQ(show_on_screen(lumo.get_text()), (Screen{"script: the solver \"" + std::string(kWaitingSolver) +
                                                         "exit 3\" ended with status 3 and without an answer",
                                                     ""}));
}

TEST_F(ProgressLineTest, IsErasedIfTheAnswerGoesToAFile)
{
  TerminalProcess lumo(LUMO_PROGRAM, make_solve_args(std::string(kWaitingSolver) + "echo unsat"),
                       folder_.get_path(), {}, folder_.get_file("answer"));
  ASSERT_TRUE(lumo.wait_for_text("solving: ")) << lumo.get_text();
  folder_.write("go", "");
  EXPECT_EQ(lumo.wait(), 0);
  EXPECT_EQ(show_on_screen(lumo.get_text()), Screen{""});
  EXPECT_EQ(folder_.read("answer"), "unsat\n");
}

TEST_F(ProgressLineTest, LeavesNothingWhenASignalEndsTheProgram)
{
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    SCOPED_TRACE(signal);
    TerminalProcess lumo(LUMO_PROGRAM, make_solve_args("echo $$ > child; sleep 1000"), folder_.get_path(),
                         {});
    ASSERT_TRUE(lumo.wait_for_text("solving: ")) << lumo.get_text();
    lumo.signal(signal);
    EXPECT_EQ(lumo.wait(), -signal);
    EXPECT_EQ(show_on_screen(lumo.get_text()), Screen{""});
    EXPECT_TRUE(goes_away(folder_.read("child")));
  }
}

TEST_F(ProgressLineTest, LeavesNothingWhenSomebodyInterruptsFromTheKeyboard)
{
  TerminalProcess lumo(LUMO_PROGRAM, make_solve_args("sleep 1000"), folder_.get_path(), {});
  ASSERT_TRUE(lumo.wait_for_text("solving: ")) << lumo.get_text();
  lumo.type("\x03");
  EXPECT_EQ(lumo.wait(), -SIGINT);
  EXPECT_EQ(show_on_screen(lumo.get_text()), Screen{""});
}

TEST_F(ProgressLineTest, TellsOfFilesThatTakeLongToWrite)
{
  ASSERT_EQ(mkfifo(folder_.get_file("pipe").c_str(), 0600), 0);
  TerminalProcess lumo(LUMO_PROGRAM, {"simplify", "script", "-o", "pipe"}, folder_.get_path(), {});
  ASSERT_TRUE(lumo.wait_for_text("writing: ")) << lumo.get_text();
  std::ifstream pipe(folder_.get_file("pipe"));
  const std::string rest{std::istreambuf_iterator<char>(pipe), {}};
  EXPECT_EQ(lumo.wait(), 0);
  EXPECT_NE(rest.find("(check-sat)"), std::string::npos) << rest;
  EXPECT_EQ(show_on_screen(lumo.get_text()), Screen{""});
}

TEST_F(ProgressLineTest, IsCutWhereTheTerminalEnds)
{
  TerminalProcess lumo(LUMO_PROGRAM, make_solve_args(std::string(kWaitingSolver) + "echo unsat"),
                       folder_.get_path(), {"xterm", 12});
  ASSERT_TRUE(lumo.wait_for_text("solving: 5 ")) << lumo.get_text();
  folder_.write("go", "");
  EXPECT_EQ(lumo.wait(), 0);
  EXPECT_EQ(lumo.get_text().find('t'), lumo.get_text().find("unsat") + 4) << lumo.get_text();
}

TEST_F(ProgressLineTest, KeepsAwayFromTerminalsThatCannotErase)
{
  for (const std::string name : {"dumb", ""}) {
    SCOPED_TRACE(name);
    TerminalProcess lumo(LUMO_PROGRAM, make_solve_args(std::string(kSlowSolver) + "echo unsat"),
                         folder_.get_path(), {name, 80});
    EXPECT_EQ(lumo.wait(), 0);
    EXPECT_EQ(lumo.get_text(), "unsat\r\n");
  }
}

TEST_F(ProgressLineTest, KeepsAwayFromWhatIsNoTerminal)
{
  const Outcome outcome =
      run_lumo(make_solve_args(std::string(kSlowSolver) + "echo unsat"), folder_.get_path());
  EXPECT_EQ(outcome.out, "unsat\n");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(ProgressLineTest, KeepsAwayWhileSomebodyTypesTheScript)
{
  TerminalProcess lumo(LUMO_PROGRAM, {"solve", "-"}, folder_.get_path(), {});
  std::this_thread::sleep_for(std::chrono::seconds(2));
  lumo.type("(assert true)\n\x04");
  EXPECT_EQ(lumo.wait(), 0);
  EXPECT_TRUE(lumo.get_text().starts_with("(assert true)\r\n")) << lumo.get_text();
  EXPECT_EQ(show_on_screen(lumo.get_text()), (Screen{"(assert true)", "sat", ""}));
}

}  // namespace
}  // namespace lumo::test
