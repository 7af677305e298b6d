#ifndef LUMO_SOLVERS_SIGNAL_GUARD_H
#define LUMO_SOLVERS_SIGNAL_GUARD_H

#include <csignal>

namespace lumo::solvers {

/// For its lifetime, blocks SIGPIPE and the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP,
/// SIGQUIT) in this thread, so that it can end its child before one of them ends the process. Signals that the
/// process ignores stay ignored.
class SignalGuard
{
 public:
  SignalGuard();
  SignalGuard(const SignalGuard&) = delete;
  SignalGuard& operator=(const SignalGuard&) = delete;
  ~SignalGuard();

  /// The mask of the thread without the guard.
  [[nodiscard]] const sigset_t& get_mask_before() const { return before_; }
  /// Whether a signal is pending that will end the program when the guard is destroyed.
  [[nodiscard]] bool is_asked_to_end() const;

 private:
  sigset_t before_{};
  bool had_pipe_signal_ = false;
};

/// For its lifetime, blocks every signal in this thread, and so in a process that it makes.
class AllSignalsGuard
{
 public:
  AllSignalsGuard();
  AllSignalsGuard(const AllSignalsGuard&) = delete;
  AllSignalsGuard& operator=(const AllSignalsGuard&) = delete;
  ~AllSignalsGuard();

 private:
  sigset_t before_{};
};

/// Resets the signals that ask a program to end to their default effect, except those that are ignored.
void reset_ending_signals();

}  // namespace lumo::solvers

#endif
