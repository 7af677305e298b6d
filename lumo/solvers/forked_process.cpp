#include "lumo/solvers/forked_process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "lumo/solvers/signal_guard.h"

// Writes g++'s counters to their files, in a build that has them. The preset `coverage` links it.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the compiler's name
extern "C" [[gnu::weak]] void __gcov_dump();

namespace lumo::solvers {

namespace {

/// Ends a child without what `exit` does: destructors and buffers are the parent's.
[[noreturn]] void end_child()
{
  if (__gcov_dump != nullptr) __gcov_dump();
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
  // A parent that has ended before the call has sent nothing.
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
  // Until it is waited for, its number cannot become that of another process.
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
