#ifndef LUMO_SOLVERS_FORKED_PROCESS_H
#define LUMO_SOLVERS_FORKED_PROCESS_H

#include <functional>
#include <optional>
#include <sys/types.h>

#include "lumo/solvers/descriptor.h"

namespace lumo::solvers {

/// Writes the coverage counters of this process to their files, in builds that have counters. For a child that is
/// killed, which has no other chance.
void save_coverage_counters();

/// A child process made by `fork` alone, which ends when this process ends, for any reason: the kernel then sends
/// it the death signal. It is in a process group of its own.
///
/// The child has one thread, a copy of the one that made it, and shares memory until one of the two writes to
/// it. It may use
/// - the allocator: glibc takes its locks during `fork`, so no lock is held by another thread;
/// - code without locks, or with locks that only the thread that made it has ever used: terms, GMP, Z3;
/// - but no streams, and nothing of another thread.
class ForkedProcess
{
 public:
  /// Makes a child that does the work with all signals blocked, and then ends. `alive` is a descriptor that only
  /// the child writes to, and that closes when the child ends: the child may write a few bytes there. Throws an
  /// `Exception` if no process can be made.
  ForkedProcess(int death_signal, const std::function<void(int alive)>& work);
  ForkedProcess(const ForkedProcess&) = delete;
  ForkedProcess& operator=(const ForkedProcess&) = delete;
  /// Kills the child if it has not ended.
  ~ForkedProcess();

  [[nodiscard]] pid_t get_id() const { return pid_; }
  /// The other end of `alive`. Reads never block, and reach the end of the file when the child ends.
  [[nodiscard]] const Descriptor& get_alive() const { return alive_; }
  [[nodiscard]] bool has_ended() const;
  /// Sends a signal to a child that has not ended.
  void signal(int number) const;
  /// Waits for the end and returns the status from `waitpid`, if there is one: to a process that ignores
  /// SIGCHLD, `waitpid` gives none.
  std::optional<int> wait();

 private:
  pid_t pid_ = -1;
  Descriptor alive_;
  bool is_waited_for_ = false;
};

}  // namespace lumo::solvers

#endif
