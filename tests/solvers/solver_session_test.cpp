// Solvers that live as long as a conversation: programs, small scripts that do what solvers should not, and Z3.

#include "lumo/solvers/solver_session.h"

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/input_error.h"
#include "tests/solvers/no_more_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/text_file.h"
#include "tests/support/waiting.h"

namespace lumo::test {
namespace {

using solvers::Deadline;
using solvers::SolverError;
using solvers::SolverSession;
using solvers::SolverTimeOver;

const Deadline kNoDeadline{std::nullopt};

/// What a solver does wrong when it is asked, from after its name on.
std::string find_session_failure(SolverSession& session, const std::string& question,
                                 const Deadline& deadline = kNoDeadline)
{
  try {
    const std::string answer = session.ask(question, deadline);
    return "(no failure, but the answer " + answer + ")";
  } catch (const SolverError& e) {
    const std::string text = e.what();
    return text.substr(text.find("\" ") + 2);
  }
}

/// The same for a command line that is asked once.
std::string find_command_failure(const std::string& command, double seconds = 60)
{
  const std::unique_ptr<SolverSession> session = SolverSession::start_command(command);
  return find_session_failure(*session, "(check-sat)\n", Deadline(seconds));
}

struct SessionRow
{
  std::string told;
  std::string question;
  std::string answer;
};

/// A conversation that every solver can hold in the same words.
const SessionRow kSessionRows[] = {
    {"(set-option :print-success false)\n(set-option :produce-models true)\n(set-logic QF_BV)\n"
     "(declare-const x (_ BitVec 4))\n(assert (bvult x #x1))\n",
     "(check-sat)\n", "sat"},
    {"(push 1)\n(declare-const |a b| Bool)\n(assert (not (= |a b| (= x #x0))))\n", "(check-sat)\n", "sat"},
    {"", "(check-sat-assuming (|a b|))\n", "unsat"},
    {"", "(check-sat-assuming ((not |a b|)))\n", "sat"},
    {"(assert |a b|)\n", "(check-sat)\n", "unsat"},
    {"(pop 1)\n(push 2)\n(declare-const |a b| (_ BitVec 3))\n(assert (= |a b| #b101))\n", "(check-sat)\n",
     "sat"},
    {"(pop 2)\n(push 1)\n(assert (bvugt x #x0))\n", "(check-sat)\n", "unsat"},
    {"(pop 1)\n", "(check-sat)\n", "sat"},
};

void hold_conversation(SolverSession& session)
{
  for (const SessionRow& row : kSessionRows) {
    session.tell(row.told);
    EXPECT_EQ(session.ask(row.question, kNoDeadline), row.answer) << row.told << row.question;
  }
  const std::string model = session.ask("(get-model)\n", kNoDeadline);
  EXPECT_NE(model.find("define-fun x () (_ BitVec 4)"), std::string::npos) << model;
}

TEST(SolverSessions, AreHeldWithZ3AsAProgram)
{
  if (std::string(LUMO_Z3_PROGRAM).empty()) GTEST_SKIP() << "there is no z3";
  hold_conversation(*SolverSession::start_command(LUMO_Z3_PROGRAM " -in"));
}

TEST(SolverSessions, AreHeldWithCvc5)
{
  if (std::string(LUMO_CVC5_PROGRAM).empty()) GTEST_SKIP() << "there is no cvc5";
  hold_conversation(*SolverSession::start_command(LUMO_CVC5_PROGRAM " --incremental"));
}

TEST(SolverSessions, AreHeldWithTheBuiltInSolver) { hold_conversation(*SolverSession::start_builtin()); }

TEST(SolverSessions, AskForSeveralAnswers)
{
  const std::unique_ptr<SolverSession> session = SolverSession::start_builtin();
  const std::vector<std::string> answers =
      session->ask_all("(echo \"a b\")(set-option :nonsense 1)(set-logic QF_BV)(check-sat)", kNoDeadline);
  EXPECT_EQ(answers, (std::vector<std::string>{"\"a b\"", "unsupported", "sat"}));
  EXPECT_EQ(session->ask("(check-sat)\n", kNoDeadline), "sat");
}

TEST(SolverSessions, SendAndReceiveMoreThanAPipeHolds)
{
  const std::unique_ptr<SolverSession> session = SolverSession::start_command("cat");
  const std::string list = "(" + std::string(5'000'000, 'x') + ")";
  EXPECT_EQ(session->ask(list + "\n", kNoDeadline), list);
  EXPECT_EQ(session->ask("(a ; (\n b)", kNoDeadline), "(a ; (\n b)");
}

TEST(BuiltInSession, NamesCoresAndAssumptions)
{
  const std::unique_ptr<SolverSession> session = SolverSession::start_builtin();
  session->tell(
      "(declare-const x (_ BitVec 8))(declare-const a Bool)(declare-const b Bool)(declare-const |c d| Bool)"
      "(assert (! (=> a (= x #x01)) :named one))(assert (! (=> b (= x #x02)) :named |two 2|))"
      "(assert (! (bvult x #xf0) :named three))");
  EXPECT_EQ(session->ask("(check-sat-assuming (|c d| a b))", kNoDeadline), "unsat");
  const std::string core = session->ask("(get-unsat-core)", kNoDeadline);
  EXPECT_NE(core.find("one"), std::string::npos) << core;
  EXPECT_NE(core.find("|two 2|"), std::string::npos) << core;
  const std::string assumptions = session->ask("(get-unsat-assumptions)", kNoDeadline);
  EXPECT_TRUE(assumptions == "(a b)" || assumptions == "(b a)") << assumptions;
}

TEST(BuiltInSession, AnswersErrorsAndGoesOn)
{
  const std::unique_ptr<SolverSession> session = SolverSession::start_builtin();
  EXPECT_EQ(session->ask("(assert x)", kNoDeadline), "(error \"the symbol x is not declared\")");
  EXPECT_EQ(session->ask("(get-proof)", kNoDeadline), "unsupported");
  EXPECT_EQ(session->ask("(get-model)", kNoDeadline).substr(0, 7), "(error ");
}

TEST(BuiltInSession, TakesSeedsAndLimitsAsNumbers)
{
  struct Row
  {
    std::string option;
    bool is_taken;
  };
  const Row rows[] = {
      {":random-seed 7", true},      {":seed 0", true},          {":timeout 60000", true},
      {":rlimit 4294967295 ", true}, {":timeout", false},        {":timeout -1", false},
      {":seed 4294967296", false},   {":random-seed x", false},  {":timeout 10 20", false},
      {":produce-models 1", true},   {":print-success x", true}, {":verbosity 1", false},
  };
  for (const Row& row : rows) {
    const std::unique_ptr<SolverSession> session = SolverSession::start_builtin();
    const std::vector<std::string> answers =
        session->ask_all("(set-option " + row.option + ")(check-sat)", kNoDeadline);
    const std::vector<std::string> taken = {"sat"};
    const std::vector<std::string> refused = {"unsupported", "sat"};
    EXPECT_EQ(answers, row.is_taken ? taken : refused) << row.option;
  }
}

TEST(BuiltInSession, SaysWhyItKnowsNoAnswer)
{
  const std::unique_ptr<SolverSession> session = SolverSession::start_builtin();
  session->tell(
      "(set-option :rlimit 1)(declare-const x (_ BitVec 64))(declare-const y (_ BitVec 64))"
      "(assert (= (bvmul x y) #x7fffffffffffffe7))(assert (bvugt x #x0000000000000001))"
      "(assert (bvugt y #x0000000000000001))(assert (bvult x #x00000000ffffffff))");
  EXPECT_EQ(session->ask("(check-sat)", kNoDeadline), "unknown");
  const std::string reason = session->ask("(get-info :reason-unknown)", kNoDeadline);
  EXPECT_EQ(reason.substr(0, 18), "(:reason-unknown \"");
}

// -----------------------------------------------------------------------------------------------------------
// Solvers that fail

TEST(SolverSessionFailures, TellHowASolverHasEnded)
{
  EXPECT_EQ(find_command_failure("exit 3"), "ended with status 3 and without an answer");
  EXPECT_EQ(find_command_failure("read line; exit 0"), "ended with status 0 and without an answer");
  EXPECT_EQ(find_command_failure("read line; echo no licence >&2; exit 1"),
            "ended with status 1 and without an answer, and complained: no licence");
  EXPECT_EQ(find_command_failure("read line; kill -SEGV $$"), "was ended by signal 11");
  EXPECT_EQ(find_command_failure("read line; printf '(sat'"), "ended with status 0 and without an answer");
  EXPECT_EQ(find_command_failure("exec cat > /dev/null"), "has closed its output without an answer");
  EXPECT_EQ(find_command_failure("exec lumo-has-no-such-program 2> /dev/null"),
            "ended with status 127 and without an answer");
}

TEST(SolverSessionFailures, KeepTheTimeLimit)
{
  EXPECT_EQ(find_command_failure("sleep 1000", 0.05), "did not answer within the time limit of 0.05 s");
  EXPECT_EQ(find_command_failure("cat > /dev/null", 0.05), "did not answer within the time limit of 0.05 s");
  EXPECT_EQ(find_command_failure("while :; do echo '; nothing'; done", 0.05),
            "did not answer within the time limit of 0.05 s");
  const std::unique_ptr<SolverSession> session = SolverSession::start_command("sleep 1000");
  EXPECT_THROW((void)session->ask("(check-sat)", Deadline(0.01)), SolverTimeOver);
}

TEST(SolverSessionFailures, NoticeAnswersWithoutAQuestion)
{
  const TemporaryFolder folder;
  const std::string mark = folder.get_file("printed");
  const std::unique_ptr<SolverSession> session =
      SolverSession::start_command("read line; echo sat; echo unsat; touch " + mark + "; cat > /dev/null");
  EXPECT_EQ(session->ask("(check-sat)\n", kNoDeadline), "sat");
  ASSERT_TRUE(wait_until([&] { return std::ifstream(mark).good(); }));
  EXPECT_EQ(find_session_failure(*session, "(check-sat)\n"), "printed unsat, but was not asked");
}

TEST(SolverSessionFailures, EndWhatACommandHasStarted)
{
  const TemporaryFolder folder;
  const std::string file = folder.get_file("pid");
  {
    const std::unique_ptr<SolverSession> session =
        SolverSession::start_command("read line; sleep 1000 & echo $! > " + file + "; echo started; cat");
    EXPECT_EQ(session->ask("go\n", kNoDeadline), "started");
  }
  EXPECT_TRUE(goes_away(read_text_file(file)));
}

TEST(SolverSessionFailures, AreReportedIfNoProcessCanBeMade)
{
  const NoMoreFiles no_more_files;
  try {
    (void)SolverSession::start_command("cat");
    ADD_FAILURE() << "started";
  } catch (const SolverError& e) {
    EXPECT_EQ(std::string(e.what()).substr(0, 69),
              "the solver \"cat\" was not started: no process can be made: no pipe: To");
  }
}

}  // namespace
}  // namespace lumo::test
