#ifndef LUMO_SOLVERS_KEEPER_H
#define LUMO_SOLVERS_KEEPER_H

#include <array>
#include <csignal>
#include <cstdint>
#include <string>

namespace lumo::solvers {

// A keeper is a process between this one and a shell. It ends the shell and all that comes from it, if it is
// asked to, and if this process ends, whatever ends it: the processes of a pipeline know nothing of each other,
// and a signal that the kernel sends when a parent ends would reach the shell alone.

/// The signal that asks a keeper to end what it keeps. It gets the same one when its parent ends.
inline constexpr int kKeeperStopSignal = SIGTERM;

enum class KeeperEvent : std::uint8_t
{
  kFailed,   ///< the shell cannot be started; `number` is the errno
  kStarted,  ///< `number` is the shell's process, and its group
  kEnded,    ///< nothing is left; `number` is the shell's status, as `waitpid` gives it
};

struct KeeperReport
{
  KeeperEvent event;
  int number;
};

/// What a keeper starts.
struct KeptShell
{
  std::string command;
  std::array<int, 3> streams;  ///< descriptors that become the standard streams
  sigset_t mask;               ///< of signals
};

/// Runs `/bin/sh -c COMMAND` in a process group of its own, waits for it to end, and kills what it leaves
/// behind, also what has left the group. Reports go to the descriptor.
///
/// To be called in a process of its own, with all signals held back; it closes all other descriptors.
void keep_shell(const KeptShell& shell, int reports);

}  // namespace lumo::solvers

#endif
