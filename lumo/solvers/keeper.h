#ifndef LUMO_SOLVERS_KEEPER_H
#define LUMO_SOLVERS_KEEPER_H

#include <array>
#include <csignal>
#include <cstdint>
#include <string>

namespace lumo::solvers {

// A keeper is a process between this one and a shell. It ends the shell and all of the shell's processes on
// request, and when this process ends, for any reason. It is needed because the processes of a pipeline do not know
// each other, and the signal that the kernel sends when a parent ends would only reach the shell.

/// The signal that makes a keeper end its processes. The kernel sends it the same signal when its parent ends.
inline constexpr int kKeeperStopSignal = SIGTERM;

enum class KeeperEvent : std::uint8_t
{
  kFailed,   ///< the shell cannot be started; `number` is the errno
  kStarted,  ///< `number` is the shell's process id and group id
  kEnded,    ///< no process is left; `number` is the shell's status from `waitpid`
};

struct KeeperReport
{
  KeeperEvent event;
  int number;
};

/// The shell that a keeper starts.
struct KeptShell
{
  std::string command;
  std::array<int, 3> streams;  ///< descriptors that become the standard streams
  sigset_t mask;               ///< of signals
};

/// Runs `/bin/sh -c COMMAND` in a process group of its own, waits for it to end, and kills all remaining
/// processes, including those that have left the group. Writes reports to the descriptor.
///
/// Call this in a separate process, with all signals blocked; it closes all other descriptors.
void keep_shell(const KeptShell& shell, int reports);

}  // namespace lumo::solvers

#endif
