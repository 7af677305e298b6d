#include "lumo/solvers/signal_guard.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>

namespace lumo::solvers {

namespace {

constexpr std::array<int, 4> kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

bool is_ignored(int signal)
{
  struct sigaction action;
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

bool is_pending(int signal)
{
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, signal) == 1;
}

/// Removes the pending SIGPIPE of our own write to a pipe without a reader.
void drop_pipe_signal()
{
  sigset_t pipe_signal;
  sigemptyset(&pipe_signal);
  sigaddset(&pipe_signal, SIGPIPE);
  const timespec at_once{};
  while (sigtimedwait(&pipe_signal, nullptr, &at_once) < 0 && errno == EINTR) {
  }
}

}  // namespace

SignalGuard::SignalGuard()
{
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGPIPE);
  for (const int signal : kEndingSignals) {
    if (!is_ignored(signal)) sigaddset(&blocked, signal);
  }
  pthread_sigmask(SIG_BLOCK, &blocked, &before_);
  had_pipe_signal_ = is_pending(SIGPIPE);
}

SignalGuard::~SignalGuard()
{
  if (!had_pipe_signal_) drop_pipe_signal();
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

bool SignalGuard::is_asked_to_end() const
{
  return std::any_of(kEndingSignals.begin(), kEndingSignals.end(), [this](int signal) {
    return sigismember(&before_, signal) == 0 && !is_ignored(signal) && is_pending(signal);
  });
}

AllSignalsGuard::AllSignalsGuard()
{
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before_);
}

AllSignalsGuard::~AllSignalsGuard() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

void reset_ending_signals()
{
  for (const int signal : kEndingSignals) {
    if (!is_ignored(signal)) std::signal(signal, SIG_DFL);
  }
}

}  // namespace lumo::solvers
