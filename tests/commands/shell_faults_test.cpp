// Conversations with solvers that do what they should not.

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/commands/shell_run.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

constexpr const char* kTalk =
    "(declare-const x (_ BitVec 4))\n"
    "(assert (= (bvmul x x) #x9))\n"
    "(push 1)\n"
    "(assert (bvult (bvurem x #x5) #x4))\n"
    "(check-sat)\n"
    "(check-sat)\n"
    "(pop 1)\n"
    "(assert (= x #x4))\n"
    "(check-sat)\n";

class ShellFaults : public testing::Test
{
 protected:
  void SetUp() override
  {
    if (std::string(LUMO_Z3_PROGRAM).empty()) GTEST_SKIP() << "there is no z3";
  }
  /// A command that does something wrong when it is started first, and later is a solver.
  [[nodiscard]] std::string fail_once(const std::string& fault) const
  {
    const std::string mark = folder_.get_file("started");
    return "if test -e " + mark + "; then exec " LUMO_Z3_PROGRAM " -in; fi; touch " + mark + "; " + fault;
  }
  /// What is printed for the first query, where the error on the solver is cut from its own words.
  [[nodiscard]] std::string hold(const std::string& fault, double seconds = 60) const
  {
    std::filesystem::remove(folder_.get_file("started"));
    const std::string command = fail_once(fault);
    const SubcommandRun outcome = run_shell_on(kTalk, {command, true, seconds});
    EXPECT_EQ(outcome.status, commands::kRefused);
    EXPECT_EQ(outcome.err, "");
    const std::string last = "\nunknown\nsat\nunsat\n";
    EXPECT_TRUE(outcome.out.ends_with(last)) << outcome.out;
    const std::string first = outcome.out.substr(0, outcome.out.size() - last.size());
    EXPECT_EQ(first.substr(0, 20), "(error \"the solver \"");
    return first.substr(first.find("\"\" ") + 3);
  }

 private:
  TemporaryFolder folder_;
};

TEST_F(ShellFaults, ASolverThatDiesIsStartedAgain)
{
  EXPECT_EQ(hold("read line; exit 7"), "ended with status 7 and without an answer\")");
}

TEST_F(ShellFaults, ASolverThatHangsIsStartedAgain)
{
  // The limit is long enough for the solver that comes next.
  EXPECT_EQ(hold("exec sleep 1000", 3), "did not answer within the time limit of 3 s\")");
}

TEST_F(ShellFaults, ASolverThatPrintsSomethingElseIsStartedAgain)
{
  EXPECT_EQ(hold("read line; echo maybe; cat > /dev/null"), "printed maybe instead of an answer\")");
  EXPECT_EQ(hold("read line; echo '(error \"no \"\"memory\"\"\")'; cat > /dev/null"),
            "printed (error \"\"no \"\"\"\"memory\"\"\"\"\"\") instead of an answer\")");
  EXPECT_EQ(
      hold("read line; echo sat; while read line; do case $line in *get-model*) echo '(x)';; esac; done"),
      "answered sat, but its model cannot be read at line 1, column 2: the symbol x was found, but "
      "define-fun "
      "was expected\")");
}

/// A solver that says that everything is satisfiable, by 0.
constexpr const char* kLiar =
    "while read line; do case $line in *check-sat*) echo sat;; "
    "*get-model*) echo '((define-fun x () (_ BitVec 4) #x0))';; esac; done";

TEST(ShellChecks, EveryModelBeforeTheAnswer)
{
  const SubcommandRun wrong = run_shell_on(kTalk, {kLiar, true, {}});
  EXPECT_EQ(wrong.status, commands::kCheckFailed);
  const std::string error =
      "(error \"<stdin>:2:1: this assertion is false under the extended model, so there is no "
      "answer\")\nunknown\n";
  EXPECT_EQ(wrong.out, error + error + error);

  const SubcommandRun assumed = run_shell_on(
      "(declare-const x (_ BitVec 4))\n(assert (bvule (bvurem x #x5) (bvmul x x)))\n"
      "(check-sat-assuming ((= x #x3)))(get-info :reason-unknown)(check-sat-assuming ((= x #x0)))(get-value "
      "(x))",
      {kLiar, true, {}});
  EXPECT_EQ(assumed.status, commands::kCheckFailed);
  const std::string reason =
      "the assumption (= x #x3) is false under the extended model, so there is no answer";
  EXPECT_EQ(assumed.out,
            "(error \"" + reason + "\")\nunknown\n(:reason-unknown \"" + reason + "\")\nsat\n((x #x0))\n");
}

TEST(ShellChecks, NoCommandLineIsStartedWithoutAQuery)
{
  const SubcommandRun outcome =
      run_shell_on("(declare-const x Bool)(assert x)(check-sat)", {"exit 1", true, {}});
  EXPECT_EQ(outcome.out, "sat\n");
  EXPECT_EQ(outcome.status, commands::kAnswered);
}

TEST(ShellChecks, TellWhyAnAnswerIsUnknown)
{
  const std::string command =
      "while read line; do case $line in *check-sat*) echo unknown;; "
      "*reason-unknown*) echo '(:reason-unknown (too hard))';; esac; done";
  const SubcommandRun outcome = run_shell_on(
      "(declare-const x (_ BitVec 4))(assert (= (bvmul x x) #x9))(check-sat)(get-info :reason-unknown)",
      {command, true, {}});
  EXPECT_EQ(outcome.out, "unknown\n(:reason-unknown (too hard))\n");
}

}  // namespace
}  // namespace lumo::test
