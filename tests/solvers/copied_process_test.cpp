// A copy of the process that does some work

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "lumo/solvers/child_process.h"
#include "tests/solvers/apart.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/waiting.h"

namespace lumo::test {
namespace {

using solvers::ChildEnd;
using solvers::ChildOutcome;
using solvers::Deadline;
using solvers::run_copy;

const Deadline kUnlimited{std::nullopt};

[[noreturn]] void wait_for_ever()
{
  for (;;)
    pause();
}

TEST(CopiedProcess, GivesWhatTheWorkReturns)
{
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{10'000'000}}) {
    const ChildOutcome outcome = run_copy([&] { return std::string(size, 'x'); }, kUnlimited);
    EXPECT_EQ(outcome.end, ChildEnd::kExit);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out, std::string(size, 'x'));
    EXPECT_EQ(outcome.err, "");
  }
}

TEST(CopiedProcess, SeesTheMemoryAndLeavesItAlone)
{
  std::string text = "before";
  const ChildOutcome outcome = run_copy(
      [&] {
        text += ", and changed";
        return text;
      },
      kUnlimited);
  EXPECT_EQ(outcome.out, "before, and changed");
  EXPECT_EQ(text, "before");
}

TEST(CopiedProcess, TellsHowItEnded)
{
  const ChildOutcome killed = run_copy(
      []() -> std::string {
        raise(SIGUSR1);
        return "done";
      },
      kUnlimited);
  EXPECT_EQ(killed.end, ChildEnd::kSignal);
  EXPECT_EQ(killed.code, SIGUSR1);
  EXPECT_EQ(killed.out, "");

  const ChildOutcome exited = run_copy([]() -> std::string { _exit(5); }, kUnlimited);
  EXPECT_EQ(exited.end, ChildEnd::kExit);
  EXPECT_EQ(exited.code, 5);

  const ChildOutcome thrown = run_copy([]() -> std::string { throw 1; }, kUnlimited);
  EXPECT_EQ(thrown.end, ChildEnd::kSignal);
  EXPECT_EQ(thrown.code, SIGABRT);
  EXPECT_NE(thrown.err, "");
}

TEST(CopiedProcess, IsKilledWhenTheTimeIsOver)
{
  const TemporaryFolder folder;
  const ChildOutcome outcome = run_copy(
      [&]() -> std::string {
        std::signal(SIGTERM, SIG_IGN);
        folder.write("copy", std::to_string(getpid()));
        wait_for_ever();
      },
      Deadline(0.3));
  EXPECT_EQ(outcome.end, ChildEnd::kTimeOver);
  // It may be killed before it writes.
  const std::string copy = folder.read("copy");
  EXPECT_TRUE(copy.empty() || goes_away(copy));
  EXPECT_EQ(run_copy([]() -> std::string { wait_for_ever(); }, Deadline(0.0)).end, ChildEnd::kTimeOver);
}

TEST(CopiedProcess, EndsWithTheProgramWhateverEndsThat)
{
  for (const int signal : {SIGKILL, SIGALRM, SIGXCPU, SIGUSR1, SIGTERM, SIGINT}) {
    SCOPED_TRACE(signal);
    const TemporaryFolder folder;
    const Apart apart([&] {
      static_cast<void>(run_copy(
          [&]() -> std::string {
            folder.write("copy", std::to_string(getpid()) + "\n");
            wait_for_ever();
          },
          kUnlimited));
    });
    ASSERT_TRUE(wait_until([&] { return folder.read("copy").ends_with('\n'); }));
    apart.signal(signal);
    EXPECT_EQ(apart.wait(), -signal);
    EXPECT_TRUE(goes_away(folder.read("copy")));
  }
}

TEST(CopiedProcess, HandlesNoSignalsOfTheProgram)
{
  const TemporaryFolder folder;
  const Apart apart([&] {
    std::signal(SIGTERM, [](int) { _exit(1); });
    const ChildOutcome outcome = run_copy(
        []() -> std::string {
          kill(getpid(), SIGTERM);
          return "done";
        },
        kUnlimited);
    _exit(outcome.end == ChildEnd::kSignal && outcome.code == SIGTERM ? 0 : 2);
  });
  EXPECT_EQ(apart.wait(), 0);
}

TEST(CopiedProcess, NeedsNoNewsOfChildrenAndNoStandardStreams)
{
  for (const int closed : {0, 1, 2, 3, 4, 5, 6, 7}) {
    const Apart apart([&] {
      std::signal(SIGCHLD, SIG_IGN);
      for (int stream = 0; stream < 3; ++stream) {
        if ((closed >> stream & 1) != 0) close(stream);
      }
      const ChildOutcome outcome = run_copy([] { return std::string("text"); }, kUnlimited);
      _exit(outcome.end == ChildEnd::kExit && outcome.out == "text" ? 0 : 1);
    });
    EXPECT_EQ(apart.wait(), 0) << closed;
  }
}

TEST(CopiedProcess, HoldsNoDescriptorsOfTheProgram)
{
  const int file = open("/dev/null", O_RDONLY);
  ASSERT_GE(file, 0);
  EXPECT_EQ(
      run_copy([&] { return std::string(fcntl(file, F_GETFD) < 0 ? "closed" : "open"); }, kUnlimited).out,
      file > 3 ? "closed" : "open");
  close(file);
}

}  // namespace
}  // namespace lumo::test
