// The program under faults of its environment: readers that close, solvers that misbehave, signals, too little
// memory.

#include <csignal>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/numbered.h"
#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/waiting.h"

namespace lumo::test {
namespace {

/// The outcome of a shell command in which `lumo` is the program.
Outcome run_shell(const std::string& line, const TemporaryFolder& folder)
{
  return run_program("/bin/sh", {"-c", "lumo() { " LUMO_PROGRAM " \"$@\"; }; " + line}, folder.get_path());
}

/// A script for which each subcommand prints more than a pipe can hold; half of it is eliminated, and the rest is
/// easy.
std::string make_long_script()
{
  constexpr std::size_t kNumAssertions = 3000;
  std::string script;
  for (std::size_t i = 0; i < kNumAssertions; ++i) {
    const std::string name = numbered("a_constant_with_a_long_name", i);
    script += "(declare-const " + name + " (_ BitVec 2))(assert (bvule ";
    script += i % 2 == 0 ? name + " #b10))\n" : "(bvand " + name + " #b01) " + name + "))\n";
  }
  return script;
}

/// Requests of which lumo invert solves all
std::string make_long_requests()
{
  std::string requests;
  for (std::size_t i = 0; i < 3000; ++i)
    requests += numbered("(declare-const a", i) + numbered(" Bool)(assert (not a", i) + "))\n";
  return requests;
}

TEST(ReaderThatGoes, EndsEachSubcommandQuietly)
{
  const TemporaryFolder folder;
  folder.write("script", make_long_script());
  folder.write("requests", make_long_requests());
  folder.write("model", "()");
  ASSERT_EQ(run_shell("lumo simplify script --trail trail -o rest", folder).status, 0);
  for (const std::string subcommand : {
           "solve script --model",
           "solve script --model --json",
           "simplify script",
           "simplify script --trail - -o /dev/null",
           "extend script --trail trail --model model",
           "dot script",
           "dot --after script",
           "invert requests",
       })
  {
    SCOPED_TRACE(subcommand);
    const std::string status_file = folder.get_file("status");
    const std::string run = "(lumo " + subcommand + "; echo $? > status)";
    const Outcome outcome = run_shell(run + " | head -c 1", folder);
    EXPECT_EQ(outcome.out.size(), 1U);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(folder.read("status"), std::to_string(128 + SIGPIPE) + "\n");

    // A process that ignores the signal gets an error from the system instead.
    const Outcome ignoring = run_shell("trap '' PIPE; " + run + " | head -c 1", folder);
    EXPECT_EQ(ignoring.err, "");
    EXPECT_EQ(folder.read("status"), "2\n");
  }
}

// -----------------------------------------------------------------------------------------------------------
// Solvers

struct FaultySolver
{
  std::string command;
  int status;
  std::string out;
  std::string err;  ///< after the name of the script and the solver
};

TEST(FaultySolvers, GetOneSentenceOrNone)
{
  const TemporaryFolder folder;
  folder.write("script", make_long_script());
  const std::vector<FaultySolver> rows = {
      {"exec <&-; echo unsat", 0, "unsat\n", ""},
      {"head -c 5 > /dev/null; exec <&-; sleep 0.2; echo unknown", 0, "unknown\n", ""},
      {"exec <&- >&-; exit 3", 2, "", "ended with status 3 and without an answer"},
      {"exec >&- 2>&-; cat > /dev/null; kill -BUS $$", 2, "", "was ended by signal 7"},
      {"cat > /dev/null; printf '(error \"first\\nsecond\")\\n'", 2, "",
       "printed (error \"first second\") instead of an answer"},
      {"head -c 5 /dev/zero", 2, "", "ended with status 0 and printed ????? instead of an answer"},
      {"echo sat; echo '((define-fun a_constant_with_a_long_name1 () Bool true))'", 2, "",
       "answered sat, but its model cannot be read at line 2, column 46 of its output: the sort Bool was "
       "found, but (_ BitVec 2), the sort of "
       "the "
       "constant a_constant_with_a_long_name1, was expected"},
      {"yes sat", 2, "", "printed more than 1073741824 bytes"},
  };
  for (const FaultySolver& row : rows) {
    SCOPED_TRACE(row.command);
    const Outcome outcome =
        run_program(LUMO_PROGRAM, {"solve", "script", "--solver", row.command}, folder.get_path());
    EXPECT_EQ(outcome.status, row.status);
    EXPECT_EQ(outcome.out, row.out);
    if (row.err.empty()) {
      EXPECT_EQ(outcome.err, "");
    } else {
      EXPECT_TRUE(outcome.err.starts_with("script: the solver \"")) << outcome.err;
      EXPECT_TRUE(outcome.err.ends_with("\" " + row.err + "\n")) << outcome.err;
    }
  }
}

TEST(FaultySolvers, AreStoppedWhenTheTimeIsOver)
{
  const TemporaryFolder folder;
  folder.write("script", make_long_script());
  for (const std::string solver : {"sleep 1000", "yes", "exec <&- >&- 2>&-; sleep 1000",
                                   "trap '' INT TERM HUP; while :; do sleep 1000; done"})
  {
    SCOPED_TRACE(solver);
    const Outcome outcome = run_program(
        LUMO_PROGRAM, {"solve", "script", "--timeout", "0.2", "--solver", "echo $$ > child; " + solver},
        folder.get_path());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "unknown\n");
    EXPECT_EQ(outcome.err, "script: the answer is unknown, since the time limit of 0.2 s was reached\n");
    EXPECT_TRUE(goes_away(folder.read("child")));
  }
}

/// Asks for two factors of 64 bits, which takes longer than a test
constexpr const char* kFactors =
    "(declare-const x (_ BitVec 128))(declare-const y (_ BitVec 128))\n"
    "(assert (= (bvmul x y) #x3b1a7f2e5c9d804613fa26b7c5e8d901))\n"
    "(assert (= ((_ extract 127 64) (bvor x y)) #x0000000000000000))\n"
    "(assert (bvult #x00000000000000000000000000000001 x))\n"
    "(assert (bvult #x00000000000000000000000000000001 y))\n";

TEST(BuiltInSolver, IsStoppedWhenTheTimeIsOver)
{
  const TemporaryFolder folder;
  folder.write("script", kFactors);
  const Outcome outcome =
      run_program(LUMO_PROGRAM, {"solve", "script", "--timeout", "0.3"}, folder.get_path());
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "unknown\n");
  EXPECT_EQ(outcome.err, "script: the answer is unknown, since the time limit of 0.3 s was reached\n");
}

TEST(BuiltInSolver, MayDieWithoutLumo)
{
  const TemporaryFolder folder;
  folder.write("script", kFactors);
  const Process lumo(LUMO_PROGRAM, {"solve", "script"}, folder.get_path());
  ASSERT_TRUE(wait_until([&] { return !list_children(lumo.get_id()).empty(); }));
  kill(std::stoi(list_children(lumo.get_id())), SIGKILL);
  const Outcome outcome = lumo.wait();
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "script: the built-in solver was ended by signal 9, perhaps since memory ran out\n");
}

// -----------------------------------------------------------------------------------------------------------
// Signals

/// Signals that lumo can handle, and others that it cannot or does not handle
constexpr int kAllEndings[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGKILL, SIGALRM, SIGXCPU, SIGUSR1};

TEST(Signals, LeaveNoSolverBehind)
{
  for (const int signal : kAllEndings) {
    SCOPED_TRACE(signal);
    const TemporaryFolder folder;
    folder.write("script", make_long_script());
    const Process lumo(
        LUMO_PROGRAM,
        {"solve", "script", "--model", "--solver",
         "trap '' INT TERM HUP QUIT; sleep 1000 & echo $$ > child; echo $! > grandchild; wait"},
        folder.get_path());
    ASSERT_TRUE(wait_until([&] { return folder.read("grandchild").ends_with('\n'); }));
    lumo.signal(signal);
    const Outcome outcome = lumo.wait();
    EXPECT_EQ(outcome.status, -signal);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(goes_away(folder.read("child")));
    EXPECT_TRUE(goes_away(folder.read("grandchild")));
  }
}

TEST(Signals, LeaveNothingOfAPipeline)
{
  for (const int signal : {SIGTERM, SIGKILL}) {
    const TemporaryFolder folder;
    folder.write("script", make_long_script());
    const auto sleeper = [](const std::string& name) {
      return "sh -c 'echo $$ > " + name + "; exec sleep 1000'";
    };
    const Process lumo(
        LUMO_PROGRAM,
        {"solve", "script", "--solver", "cat > /dev/null; " + sleeper("left") + " | " + sleeper("right")},
        folder.get_path());
    for (const char* name : {"left", "right"})
      ASSERT_TRUE(wait_until([&] { return folder.read(name).ends_with('\n'); })) << signal;
    lumo.signal(signal);
    EXPECT_EQ(lumo.wait().status, -signal);
    EXPECT_TRUE(goes_away(folder.read("left"))) << signal;
    EXPECT_TRUE(goes_away(folder.read("right"))) << signal;
  }
}

TEST(Signals, LeaveNoBuiltInSolverBehind)
{
  for (const int signal : kAllEndings) {
    SCOPED_TRACE(signal);
    const TemporaryFolder folder;
    folder.write("script", kFactors);
    const Process lumo(LUMO_PROGRAM, {"solve", "script"}, folder.get_path());
    ASSERT_TRUE(wait_until([&] { return !list_children(lumo.get_id()).empty(); }));
    const std::string solver = list_children(lumo.get_id());
    lumo.signal(signal);
    const Outcome outcome = lumo.wait();
    EXPECT_EQ(outcome.status, -signal);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(goes_away(solver));
  }
}

/// The trail goes into a pipe without a reader, so the program waits while the file for the rest is open.
TEST(Signals, LeaveTheOldFile)
{
  for (const int signal : {SIGINT, SIGTERM, SIGKILL}) {
    SCOPED_TRACE(signal);
    const TemporaryFolder folder;
    folder.write("script", make_long_script());
    folder.write("rest", "old");
    ASSERT_EQ(mkfifo(folder.get_file("pipe").c_str(), 0600), 0);
    const Process reader("/bin/sh", {"-c", "exec 3< pipe; echo > opened; exec sleep 1000"},
                         folder.get_path());
    const Process lumo(LUMO_PROGRAM, {"simplify", "script", "-o", "rest", "--trail", "pipe"},
                       folder.get_path());
    ASSERT_TRUE(wait_until([&] { return !folder.read("opened").empty(); }));
    lumo.signal(signal);
    EXPECT_EQ(lumo.wait().status, -signal);
    reader.signal(SIGKILL);
    EXPECT_EQ(reader.wait().status, -SIGKILL);
    EXPECT_EQ(folder.read("rest"), "old");
  }
}

// -----------------------------------------------------------------------------------------------------------
// Files

TEST(UnwritableFiles, LeaveTheOldOnes)
{
  const TemporaryFolder folder;
  folder.write("script", make_long_script());
  folder.write("old rest", "rest");
  folder.write("old trail", "trail");
  std::filesystem::create_directory(folder.get_path() / "folder");
  const std::size_t num_files = folder.count_files();
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
      {{"-o", "old rest", "--trail", "/dev/full"},
       "/dev/full: this cannot be written: No space left on device"},
      {{"-o", "/dev/full", "--trail", "old trail"},
       "/dev/full: this cannot be written: No space left on device"},
      {{"-o", "old rest", "--trail", "folder"}, "folder: this cannot be written: Is a directory"},
      {{"-o", "none/rest", "--trail", "old trail"},
       "none/rest: this cannot be written: No such file or directory"},
  };
  for (const auto& [options, message] : rows) {
    SCOPED_TRACE(message);
    std::vector<std::string> args = {"simplify", "script"};
    args.insert(args.end(), options.begin(), options.end());
    const Outcome outcome = run_program(LUMO_PROGRAM, args, folder.get_path());
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, message + "\n");
    EXPECT_EQ(folder.read("old rest"), "rest");
    EXPECT_EQ(folder.read("old trail"), "trail");
    EXPECT_EQ(folder.count_files(), num_files);
  }
}

/// The outcome of a bash command in which `lumo` is the program.
Outcome run_bash(const std::string& line, const TemporaryFolder& folder)
{
  return run_program("/bin/bash", {"-c", "lumo() { " LUMO_PROGRAM " \"$@\"; }; " + line}, folder.get_path());
}

TEST(OpenFiles, AreWrittenToAsTheyAre)
{
  const TemporaryFolder folder;
  folder.write("script", make_long_script());
  ASSERT_EQ(run_bash("lumo simplify script -o rest --trail trail", folder).status, 0);
  const std::string rest = folder.read("rest");
  const std::string trail = folder.read("trail");
  for (const std::string line : {
           "lumo simplify script -o /dev/stdout --trail got-trail | cat > got-rest",
           "lumo simplify script -o /dev/fd/1 --trail got-trail | cat > got-rest",
           "lumo simplify script -o /dev/stdout --trail got-trail > got-rest",
           "lumo simplify script -o /dev/stderr --trail got-trail 2> got-rest",
           "lumo simplify script -o /dev/fd/7 --trail got-trail 7> got-rest",
           "lumo simplify script -o /proc/self/fd/7 --trail /dev/stdout 7> got-rest > got-trail",
           "lumo simplify script -o >(cat > got-rest; : > done) --trail got-trail; "
           "until [ -e done ]; do sleep 0.02; done",
           "lumo simplify script -o got-rest --trail >(gzip > trail.gz; : > done); "
           "until [ -e done ]; do sleep 0.02; done; gunzip < trail.gz > got-trail",
       })
  {
    SCOPED_TRACE(line);
    const Outcome outcome = run_bash("rm -f done got-rest got-trail; " + line, folder);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(folder.read("got-rest"), rest);
    EXPECT_EQ(folder.read("got-trail"), trail);
  }
  const Outcome appending = run_bash("(echo a; lumo simplify script -o /dev/stdout; echo b) > all", folder);
  EXPECT_EQ(appending.status, 0);
  EXPECT_EQ(folder.read("all"), "a\n" + rest + "b\n");
}

// -----------------------------------------------------------------------------------------------------------
// Memory

#ifndef __SANITIZE_ADDRESS__  // which reserves the address space
TEST(TooLittleMemory, IsToldInOneSentenceWhereverItRunsOut)
{
  const TemporaryFolder folder;
  folder.write("script", make_long_script());
  constexpr std::size_t kStep = 4000;  // KiB
  std::size_t limit = kStep;
  while (run_shell(numbered("ulimit -v ", limit) + "; lumo --version", folder).status != 0)
    limit += kStep;
  std::size_t num_failures = 0;
  for (;; limit += kStep) {
    const Outcome outcome = run_shell(numbered("ulimit -v ", limit) + "; lumo solve script --model", folder);
    if (outcome.status == 0) break;
    EXPECT_EQ(outcome.status, 2) << limit;
    EXPECT_EQ(outcome.out, "") << limit;
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << limit << ": " << outcome.err;
    // If it is the solver that has no memory, the sentence names the script.
    EXPECT_TRUE(outcome.err.starts_with("lumo: ") || outcome.err.starts_with("script: "))
        << limit << ": " << outcome.err;
    EXPECT_NE(outcome.err.find("memory"), std::string::npos) << limit << ": " << outcome.err;
    ++num_failures;
  }
  EXPECT_GT(num_failures, 3U);
}

TEST(TooLittleMemory, EndsEverySubcommandAlike)
{
  const TemporaryFolder folder;
  folder.write("script", make_long_script());
  folder.write("requests", make_long_requests());
  ASSERT_EQ(run_shell("lumo simplify script -o rest --trail trail; lumo solve rest --model | sed 1d > model; "
                      "lumo extend script --trail trail --model model > full",
                      folder)
                .status,
            0);
  for (const std::string subcommand : {
           "simplify script -o new-rest --trail new-trail",
           "extend script --trail trail --model model",
           "check script --model full",
           "dot script",
           "invert requests",
       })
  {
    SCOPED_TRACE(subcommand);
    const std::size_t num_files = folder.count_files();
    // With less than the smallest limit, the program does not even start.
    std::size_t limit = 1000;  // KiB
    constexpr std::size_t kStep = 1000;
    while (run_shell(numbered("ulimit -v ", limit) + "; lumo --version", folder).status != 0)
      limit += kStep;
    std::size_t num_failures = 0;
    for (;; limit += kStep) {
      const Outcome outcome = run_shell(numbered("ulimit -v ", limit) + "; lumo " + subcommand, folder);
      if (outcome.status == 0) break;
      ASSERT_EQ(outcome.status, 2) << limit;
      ASSERT_EQ(outcome.err, "lumo: there is not enough memory\n") << limit;
      EXPECT_EQ(folder.count_files(), num_files) << limit;
      ++num_failures;
    }
    EXPECT_GT(num_failures, 0U);
  }
}

/// An assertion over a bit-vector of many bits: most of its memory is GMP's.
TEST(TooLittleMemory, ForNumbersIsToldInTheSameSentence)
{
  const TemporaryFolder folder;
  const std::string script =
      "(declare-const x (_ BitVec 4000000))(assert (= (bvnot x) #x1" + std::string(999999, '0') + "))\n";
  folder.write("requests", script);
  std::size_t num_failures = 0;
  std::size_t limit = 1000;  // KiB
  constexpr std::size_t kStep = 700;
  while (run_shell(numbered("ulimit -v ", limit) + "; lumo --version", folder).status != 0)
    limit += kStep;
  for (;; limit += kStep) {
    const Outcome outcome = run_shell(numbered("ulimit -v ", limit) + "; lumo invert requests > out", folder);
    if (outcome.status == 0) break;
    ASSERT_EQ(outcome.status, 2) << limit << ": " << outcome.err;
    ASSERT_EQ(outcome.err, "lumo: there is not enough memory\n") << limit;
    ++num_failures;
  }
  EXPECT_GT(num_failures, 0U);
}
#endif

}  // namespace
}  // namespace lumo::test
