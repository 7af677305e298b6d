#include "lumo/solvers/keeper.h"

#include <cerrno>
#include <charconv>
#include <ctime>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

// NOLINTNEXTLINE(readability-redundant-declaration): POSIX leaves the declaration to the program
extern char** environ;

namespace lumo::solvers {

namespace {

/// The pause between checks of processes that are being killed
constexpr timespec kPause{0, 10'000'000};

sigset_t make_set(std::initializer_list<int> signals)
{
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : signals)
    sigaddset(&set, signal);
  return set;
}

/// Starts a shell in a process group of its own; returns 0, or the errno.
int start_shell(const KeptShell& shell, pid_t& pid)
{
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  for (int i = 0; i < 3; ++i)
    posix_spawn_file_actions_adddup2(&actions, shell.streams[static_cast<std::size_t>(i)], i);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
  posix_spawnattr_setpgroup(&attributes, 0);
  posix_spawnattr_setsigmask(&attributes, &shell.mask);

  std::string name = "sh";
  std::string option = "-c";
  std::string line = shell.command;
  const std::array<char*, 4> argv = {name.data(), option.data(), line.data(), nullptr};
  const int failure = posix_spawn(&pid, "/bin/sh", &actions, &attributes, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  return failure;
}

/// Returns when the shell has ended, or when the keeper must stop. Does not wait for the shell itself, so it keeps
/// its number; waits for other children, which the keeper has adopted.
void wait_for_end(pid_t shell)
{
  const sigset_t signals = make_set({SIGCHLD, kKeeperStopSignal});
  for (;;) {
    siginfo_t ended{};
    if (waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) != 0 || ended.si_pid == shell) return;
    if (ended.si_pid != 0) {
      waitpid(ended.si_pid, nullptr, 0);
    } else if (sigwaitinfo(&signals, nullptr) == kKeeperStopSignal) {
      return;
    }
  }
}

/// Kills the children of this process, or some of them if there are many; returns false if the system does not list
/// them.
bool kill_children()
{
  const int file = open("/proc/thread-self/children", O_RDONLY | O_CLOEXEC);
  std::array<char, 4096> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
  const ssize_t size = file < 0 ? -1 : read(file, buffer.data(), buffer.size());
  if (file >= 0) close(file);
  if (size < 0) return false;
  // A space follows each number; a number that is cut is killed in the next round.
  std::string_view text(buffer.data(), static_cast<std::size_t>(size));
  for (std::size_t end = text.find(' '); end != std::string_view::npos; end = text.find(' ')) {
    pid_t child = -1;
    std::from_chars(text.data(), text.data() + end, child);
    if (child > 0) kill(child, SIGKILL);
    text.remove_prefix(end + 1);
  }
  return true;
}

/// Kills the shell and all processes that it started, and returns the shell's status. The keeper adopts the
/// children of each killed process, so several rounds may be needed.
int kill_all(pid_t shell)
{
  // Kill the group first: a child that was not waited for keeps its number.
  kill(-shell, SIGKILL);
  int status = 0;
  while (waitpid(shell, &status, 0) < 0 && errno == EINTR) {
  }
  constexpr int kMaxRounds = 100;
  const sigset_t child_signal = make_set({SIGCHLD});
  for (int i = 0; i < kMaxRounds; ++i) {
    pid_t ended = 0;
    do {
      ended = waitpid(-1, nullptr, WNOHANG);
    } while (ended > 0);
    if (ended < 0 || !kill_children()) break;
    sigtimedwait(&child_signal, nullptr, &kPause);
  }
  return status;
}

void send(int reports, KeeperEvent event, int number)
{
  const KeeperReport report{event, number};
  [[maybe_unused]] const ssize_t num_written = write(reports, &report, sizeof report);
}

}  // namespace

void keep_shell(const KeptShell& shell, int reports)
{
  std::signal(SIGCHLD, SIG_DFL);
  prctl(PR_SET_CHILD_SUBREAPER, 1UL);
  pid_t pid = -1;
  const int failure = start_shell(shell, pid);
  if (failure != 0) {
    send(reports, KeeperEvent::kFailed, failure);
    return;
  }
  send(reports, KeeperEvent::kStarted, pid);
  // Only the shell and the parent may have ends of the shell's pipes.
  dup2(reports, STDIN_FILENO);
  closefrom(STDOUT_FILENO);
  wait_for_end(pid);
  send(STDIN_FILENO, KeeperEvent::kEnded, kill_all(pid));
}

}  // namespace lumo::solvers
