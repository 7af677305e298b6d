#ifndef LUMO_SOLVERS_CHILD_PROCESS_H
#define LUMO_SOLVERS_CHILD_PROCESS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "lumo/solvers/deadline.h"

namespace lumo::solvers {

enum class ChildEnd : std::uint8_t
{
  kExit,         ///< by itself, with an exit status
  kSignal,       ///< by a signal that this process did not send
  kTimeOver,     ///< killed at the deadline
  kInterrupted,  ///< killed, since this program is asked to end
  kTooVerbose,   ///< killed, since it printed more than kMaxOutput
};

/// How a child process ended, and what it printed until then.
struct ChildOutcome
{
  ChildEnd end = ChildEnd::kExit;
  int code = 0;     ///< the exit status or the signal's number
  std::string out;  ///< all of its standard output
  std::string err;  ///< the start of its standard error
};

/// A program with more standard output than this is killed.
inline constexpr std::size_t kMaxOutput = std::size_t{1} << 30;

// While one of these functions runs, the calling thread blocks the signals that ask a program to end (SIGINT,
// SIGTERM, SIGHUP, SIGQUIT), so that it can kill the child before one of them ends this process. If anything else
// ends this process, SIGKILL included, the child is killed immediately afterwards. The signal handling of the
// process stays unchanged. Throws an `Exception` if no process can be made.

/// Runs a command line with `/bin/sh -c` in a process group of its own, writes the input to its standard input
/// and reads what it prints at the same time. The child need not read all of its input. All processes that the
/// command has started are killed when the shell ends or at the deadline.
[[nodiscard]] ChildOutcome run_child(const std::string& command, std::string_view input,
                                     const Deadline& deadline);

/// Runs a function in a copy of this process; the string that it returns is the output of the child. The copy
/// shares the memory of this process until it changes it, and it never returns from this call. `ForkedProcess` says
/// what the function may use. An exception that it throws ends the child by SIGABRT. If the function calls `exit`
/// or does not return, the output is empty or cut.
[[nodiscard]] ChildOutcome run_copy(const std::function<std::string()>& work, const Deadline& deadline);

}  // namespace lumo::solvers

#endif
