#include "lumo/solvers/child_process.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <sstream>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "lumo/terms/exception.h"
#include "tests/solvers/apart.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/waiting.h"

namespace lumo::test {
namespace {

using solvers::ChildEnd;
using solvers::ChildOutcome;
using solvers::Deadline;

const Deadline kNever{std::nullopt};
constexpr std::size_t kMuch = 10'000'000;

ChildOutcome run_shell(const std::string& command, const std::string& input = "")
{
  return solvers::run_child(command, input, kNever);
}

TEST(ChildProcess, TellsTheOutputAndTheExitStatus)
{
  const ChildOutcome outcome = run_shell("cat; echo 'and \"more\"'; echo trouble >&2; exit 3", "some text\n");
  EXPECT_EQ(outcome.end, ChildEnd::kExit);
  EXPECT_EQ(outcome.code, 3);
  EXPECT_EQ(outcome.out, "some text\nand \"more\"\n");
  EXPECT_EQ(outcome.err, "trouble\n");
}

TEST(ChildProcess, TellsTheSignalThatEndedTheChild)
{
  const ChildOutcome outcome = run_shell("echo half; kill -SEGV $$");
  EXPECT_EQ(outcome.end, ChildEnd::kSignal);
  EXPECT_EQ(outcome.code, SIGSEGV);
  EXPECT_EQ(outcome.out, "half\n");
}

TEST(ChildProcess, TellsWhatTheShellSaysOfAMissingProgram)
{
  const ChildOutcome outcome = run_shell("/nowhere/no-such-program");
  EXPECT_EQ(outcome.end, ChildEnd::kExit);
  EXPECT_EQ(outcome.code, 127);
  EXPECT_NE(outcome.err.find("no-such-program"), std::string::npos) << outcome.err;
}

TEST(ChildProcess, ExchangesMoreThanPipesHold)
{
  const std::string input(kMuch, 'x');
  EXPECT_EQ(run_shell("cat", input).out, input);
}

TEST(ChildProcess, ReadsFromAChildThatPrintsBeforeItReads)
{
  const std::string input(1'000'000, 'x');
  const ChildOutcome outcome = run_shell("head -c 2000000 /dev/zero | tr '\\0' 'y'; wc -c", input);
  ASSERT_GT(outcome.out.size(), 2'000'000U);
  EXPECT_EQ(std::stoul(outcome.out.substr(2'000'000)), input.size());
}

TEST(ChildProcess, SurvivesAChildThatDoesNotReadItsInput)
{
  const std::string input(1'000'000, 'x');
  EXPECT_EQ(run_shell("echo done", input).out, "done\n");
  EXPECT_EQ(run_shell("exec <&-; echo done; exec >&-; exit 4", input).code, 4);
  EXPECT_EQ(run_shell("head -c 3; exec <&-; sleep 0.1; echo done", input).out, "xxxdone\n");
}

TEST(ChildProcess, KeepsOnlyTheStartOfALongErrorText)
{
  const ChildOutcome outcome = run_shell("echo first >&2; head -c 1000000 /dev/zero >&2; echo done");
  EXPECT_EQ(outcome.out, "done\n");
  EXPECT_EQ(outcome.err.substr(0, 6), "first\n");
  EXPECT_LT(outcome.err.size(), 100'000U);
}

TEST(ChildProcess, DoesNotWaitForWhatTheChildLeavesBehind)
{
  const ChildOutcome outcome = run_shell("sleep 1000 & echo $!");
  EXPECT_EQ(outcome.end, ChildEnd::kExit);
  EXPECT_EQ(outcome.code, 0);
  EXPECT_TRUE(goes_away(outcome.out));
}

TEST(ChildProcess, KillsWhatHasLeftTheGroup)
{
  for (const std::string end : {"exit 0", "sleep 1000"}) {
    const TemporaryFolder folder;
    const std::string file = folder.get_file("escaped");
    const std::string escape = "setsid sh -c 'echo $$ > " + file + "; sleep 1000 & wait' & ";
    const std::string wait = "until test -s " + file + "; do sleep 0.01; done; ";
    static_cast<void>(solvers::run_child(escape + wait + end, "", Deadline(end == "exit 0" ? 60.0 : 1.0)));
    ASSERT_FALSE(folder.read("escaped").empty()) << end;
    EXPECT_TRUE(goes_away(folder.read("escaped"))) << end;
  }
}

TEST(ChildProcess, KillsTheWholeGroupWhenTheTimeIsOver)
{
  const ChildOutcome outcome =
      solvers::run_child("trap '' TERM; sleep 1000 & echo $!; wait", "", Deadline(1.0));
  EXPECT_EQ(outcome.end, ChildEnd::kTimeOver);
  ASSERT_FALSE(outcome.out.empty());
  EXPECT_TRUE(goes_away(outcome.out));
}

TEST(ChildProcess, StopsAChildThatHasClosedItsStreams)
{
  EXPECT_EQ(solvers::run_child("exec <&- >&- 2>&-; sleep 1000", "input", Deadline(0.1)).end,
            ChildEnd::kTimeOver);
}

TEST(ChildProcess, StopsAChildThatPrintsWithoutEnd)
{
  EXPECT_EQ(solvers::run_child("yes", "", Deadline(0.1)).end, ChildEnd::kTimeOver);
}

TEST(ChildProcess, IsOverAtOnceWithoutTime)
{
  EXPECT_EQ(solvers::run_child("sleep 1000", "", Deadline(0.0)).end, ChildEnd::kTimeOver);
}

TEST(ChildProcess, RefusesACommandThatTheSystemDoesNotTake)
{
  EXPECT_THROW(static_cast<void>(run_shell(std::string(kMuch, 'x'))), Exception);
}

TEST(ChildProcess, LeavesDispositionsAndMaskOfSignalsAlone)
{
  sigset_t mask_before;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask_before);
  static_cast<void>(run_shell("exec <&-; echo done", std::string(1'000'000, 'x')));

  struct sigaction action;
  sigaction(SIGPIPE, nullptr, &action);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
  sigset_t mask_after;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask_after);
  for (int signal = 1; signal < 32; ++signal)
    EXPECT_EQ(sigismember(&mask_after, signal), sigismember(&mask_before, signal)) << signal;
}

TEST(ChildProcess, GivesTheChildTheMaskOfItsCaller)
{
  // None of these signals is blocked in the shell: each of them ends it.
  for (const int signal : {SIGPIPE, SIGTERM, SIGHUP, SIGINT})
    EXPECT_EQ(run_shell("kill -" + std::to_string(signal) + " $$; sleep 1; echo alive").code, signal);
}

TEST(ChildProcess, LeavesNoDescriptorsBehind)
{
  const auto get_next_descriptor = [] {
    const int next = open("/dev/null", O_RDONLY);
    close(next);
    return next;
  };
  const int before = get_next_descriptor();
  static_cast<void>(run_shell("true"));
  EXPECT_EQ(get_next_descriptor(), before);
}

TEST(ChildProcess, EndsTheChildBeforeASignalEndsTheProgram)
{
  for (const int signal : {SIGINT, SIGTERM}) {
    const TemporaryFolder folder;
    const std::string file = folder.get_file("grandchild");
    const Apart apart([&] { static_cast<void>(run_shell("sleep 1000 & echo $! > " + file + "; wait")); });
    ASSERT_TRUE(wait_until([&] { return folder.read("grandchild").ends_with('\n'); }));
    apart.signal(signal);
    EXPECT_EQ(apart.wait(), -signal);
    EXPECT_TRUE(goes_away(folder.read("grandchild")));
  }
}

/// Commands that write the numbers of their processes, one a line, and how many these are
struct Family
{
  std::string command;
  std::ptrdiff_t num_processes;
};

TEST(ChildProcess, EndsAllOfTheChildWhateverEndsTheProgram)
{
  const std::string wait_for_end = "; sh -c 'echo $$; exec sleep 1000'";
  const Family families[] = {
      {"echo $$; exec sleep 1000", 1},
      {"cat > /dev/null; (echo $$; sh -c 'echo $$ >&2; exec sleep 1000') | sh -c 'echo $$ >&2; exec sleep "
       "1000'",
       2},
      {"trap '' HUP INT TERM USR1; echo $$" + wait_for_end, 2},
      {"setsid sh -c 'echo $$; exec sleep 1000' &" + wait_for_end.substr(1), 2},
      {"timeout 1000 sh -c 'echo $$; exec sleep 1000'", 1},
  };
  for (const int signal : {SIGKILL, SIGALRM, SIGXCPU, SIGUSR1, SIGTERM}) {
    for (const Family& family : families) {
      SCOPED_TRACE(testing::Message() << "signal " << signal << ": " << family.command);
      const TemporaryFolder folder;
      const std::string file = folder.get_file("processes");
      const Apart apart(
          [&] { static_cast<void>(run_shell("{ " + family.command + "; } >> " + file + " 2>&1")); });
      const auto count_lines = [&] {
        const std::string text = folder.read("processes");
        return std::count(text.begin(), text.end(), '\n');
      };
      ASSERT_TRUE(wait_until([&] { return count_lines() == family.num_processes; }));
      apart.signal(signal);
      EXPECT_EQ(apart.wait(), -signal);
      std::istringstream processes(folder.read("processes"));
      for (std::string process; std::getline(processes, process);)
        EXPECT_TRUE(goes_away(process));
    }
  }
}

TEST(ChildProcess, TellsThatTheProgramIsAskedToEnd)
{
  const TemporaryFolder folder;
  const Apart apart([&] {
    std::signal(SIGTERM, [](int) {});
    const ChildOutcome outcome = run_shell("echo > " + folder.get_file("started") + "; sleep 1000");
    _exit(outcome.end == ChildEnd::kInterrupted ? 0 : 1);
  });
  ASSERT_TRUE(wait_until([&] { return !folder.read("started").empty(); }));
  apart.signal(SIGTERM);
  EXPECT_EQ(apart.wait(), 0);
}

TEST(ChildProcess, NeedsNoNewsOfChildren)
{
  const Apart apart([] {
    std::signal(SIGCHLD, SIG_IGN);
    const ChildOutcome outcome = run_shell("cat; exit 3", "text");
    _exit(outcome.end == ChildEnd::kExit && outcome.code == 3 && outcome.out == "text" ? 0 : 1);
  });
  EXPECT_EQ(apart.wait(), 0);
}

TEST(ChildProcess, PaysNoHeedToIgnoredSignals)
{
  const TemporaryFolder folder;
  const std::string command = "echo > " + folder.get_file("started") + "; until test -e " +
                              folder.get_file("go") + "; do sleep 0.1; done";
  const Apart apart([&] {
    std::signal(SIGHUP, SIG_IGN);
    _exit(run_shell(command + "; echo done").out == "done\n" ? 0 : 1);
  });
  ASSERT_TRUE(wait_until([&] { return !folder.read("started").empty(); }));
  apart.signal(SIGHUP);
  folder.write("go", "");
  EXPECT_EQ(apart.wait(), 0);
}

TEST(ChildProcess, NeedsNoStandardStreamsOfItsOwn)
{
  for (const int closed : {1, 2, 3, 4, 5, 6, 7}) {
    const Apart apart([&] {
      for (int stream = 0; stream < 3; ++stream) {
        if ((closed >> stream & 1) != 0) close(stream);
      }
      const ChildOutcome outcome = run_shell("cat; echo trouble >&2", "text");
      _exit(outcome.out == "text" && outcome.err == "trouble\n" ? 0 : 1);
    });
    EXPECT_EQ(apart.wait(), 0) << closed;
  }
}

}  // namespace
}  // namespace lumo::test
