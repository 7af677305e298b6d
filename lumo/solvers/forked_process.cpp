#include "lumo/solvers/forked_process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "lumo/solvers/signal_guard.h"

// Writes g++'s coverage counters to their files, in builds that have them: those with the preset `coverage`.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): the compiler's name
extern "C" [[gnu::weak]] void __gcov_dump();
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): the compiler's name
extern "C" [[gnu::weak]] void __gcov_reset();

namespace lumo::solvers {

void save_coverage_counters()
{
  if (__gcov_dump == nullptr) return;
  __gcov_dump();
  if (__gcov_reset != nullptr) __gcov_reset();
}

namespace {

/// Ends a child without the work of `exit`: destructors and buffers belong to the parent.
[[noreturn]] void end_child()
{
  save_coverage_counters();
  _exit(EXIT_SUCCESS);
}

}  // namespace

ForkedProcess::ForkedProcess(int death_signal, const std::function<void(int alive)>& work)
{
  Pipe pipe = make_pipe();
  alive_ = std::move(pipe.read_end);
  make_nonblocking(alive_);
  const pid_t parent = getpid();
  // No handler of this process may run in the child.
  const AllSignalsGuard guard;
  pid_ = fork();
  if (pid_ < 0) fail_without_process("no fork", errno);
  if (pid_ > 0) return;

  setpgid(0, 0);
  // If the parent ended before this call, the kernel does not send the signal.
  const bool has_parent = prctl(PR_SET_PDEATHSIG, death_signal) == 0 && getppid() == parent;
  if (has_parent) work(pipe.write_end.get());
  end_child();
}

ForkedProcess::~ForkedProcess()
{
  if (is_waited_for_) return;
  signal(SIGKILL);
  wait();
}

bool ForkedProcess::has_ended() const
{
  siginfo_t info{};
  return waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
         info.si_pid == pid_;
}

void ForkedProcess::signal(int number) const
{
  // Until the child is waited for, no other process can get its number.
  if (!is_waited_for_) kill(pid_, number);
}

std::optional<int> ForkedProcess::wait()
{
  is_waited_for_ = true;
  int status = 0;
  pid_t ended = -1;
  do {
    ended = waitpid(pid_, &status, 0);
  } while (ended < 0 && errno == EINTR);
  return ended == pid_ ? std::optional(status) : std::nullopt;
}

}  // namespace lumo::solvers
