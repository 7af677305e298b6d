#ifndef LUMO_SOLVERS_CHILD_PROCESS_H
#define LUMO_SOLVERS_CHILD_PROCESS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "lumo/solvers/deadline.h"

namespace lumo::solvers {

enum class ChildEnd : std::uint8_t
{
  kExit,        ///< by itself, with an exit status
  kSignal,      ///< by a signal that came from elsewhere
  kStopped,     ///< killed, since its time was over or this program is asked to end
  kTooVerbose,  ///< killed, since it printed more than kMaxOutput
};

/// How a child process ended, and what it printed until then.
struct ChildOutcome
{
  ChildEnd end = ChildEnd::kExit;
  int code = 0;     ///< the exit status or the signal's number
  std::string out;  ///< all of its standard output
  std::string err;  ///< the start of its standard error
};

/// More standard output than this is no child's that we know how to talk to.
inline constexpr std::size_t kMaxOutput = std::size_t{1} << 30;

/// Runs a command line with `/bin/sh -c` in a process group of its own, writes the input to its standard input
/// and reads what it prints at the same time. A child that does not read all of its input is fine. What of
/// the group is left when the child ends, or when the deadline is over, is killed.
///
/// While the child runs, the calling thread holds back the signals that ask a program to end (SIGINT,
/// SIGTERM, SIGHUP, SIGQUIT), so that the group is killed before one of them ends this process. What the
/// process does on signals stays as it is. An `Exception` says why no process can be made.
[[nodiscard]] ChildOutcome run_child(const std::string& command, std::string_view input,
                                     const Deadline& deadline);

}  // namespace lumo::solvers

#endif
