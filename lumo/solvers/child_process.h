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
  kSignal,       ///< by a signal that came from elsewhere
  kTimeOver,     ///< killed, since the deadline is over
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

/// More standard output than this is not that of a program that we know how to talk to.
inline constexpr std::size_t kMaxOutput = std::size_t{1} << 30;

// While one of these runs, the calling thread holds back the signals that ask a program to end (SIGINT, SIGTERM,
// SIGHUP, SIGQUIT), so that the child is killed before one of them ends this process. If anything else ends this
// process, SIGKILL included, the child is killed at once after it. What the process does on signals stays as it
// is. An `Exception` says why no process can be made.

/// Runs a command line with `/bin/sh -c` in a process group of its own, writes the input to its standard input
/// and reads what it prints at the same time. A child that does not read all of its input is fine. Whatever the
/// command has started is killed when the shell ends or when the deadline is over.
[[nodiscard]] ChildOutcome run_child(const std::string& command, std::string_view input,
                                     const Deadline& deadline);

/// Runs a function in a copy of this process and takes the string that it returns as what the child prints. The
/// copy shares the memory of this process until it changes it, and it never returns from this call. What the
/// function may use, `ForkedProcess` says; what it throws ends the child by SIGABRT. If the function calls `exit`
/// or does not get so far, the output is empty or cut.
[[nodiscard]] ChildOutcome run_copy(const std::function<std::string()>& work, const Deadline& deadline);

}  // namespace lumo::solvers

#endif
