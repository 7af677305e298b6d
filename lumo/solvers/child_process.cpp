#include "lumo/solvers/child_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "lumo/solvers/child_ends.h"
#include "lumo/solvers/descriptor.h"
#include "lumo/solvers/forked_process.h"
#include "lumo/solvers/keeper.h"
#include "lumo/solvers/signal_guard.h"

namespace lumo::solvers {

namespace {

constexpr std::size_t kMaxErrorText = 4096;

/// The pipes to a child's standard streams, and the output that was received.
class Streams
{
 public:
  /// Without input, there is no pipe to the standard input.
  explicit Streams(std::string_view input) : input_(input)
  {
    for (const Descriptor* end : {&in_.write_end, &out_.read_end, &err_.read_end})
      make_nonblocking(*end);
  }

  /// The child's ends.
  [[nodiscard]] std::array<int, 3> get_child_ends() const
  {
    return {in_.read_end.get(), out_.write_end.get(), err_.write_end.get()};
  }
  void close_child_ends()
  {
    in_.read_end.close();
    out_.write_end.close();
    err_.write_end.close();
  }
  /// Sends and receives as much as possible. If nothing is possible yet, waits for that or for the end of the
  /// child, at most for the given time.
  void exchange(const Descriptor& alive, int milliseconds);
  [[nodiscard]] bool is_too_verbose() const { return outcome_.out.size() > kMaxOutput; }
  /// Receives the rest of the output from the pipes. Precondition: the child has ended.
  [[nodiscard]] ChildOutcome finish();

 private:
  void send();
  static bool receive(Descriptor& stream, std::string& text, std::size_t most);

  std::string_view input_;  ///< the part that is not sent yet
  Pipe in_ = make_pipe();
  Pipe out_ = make_pipe();
  Pipe err_ = make_pipe();
  ChildOutcome outcome_;
};

void Streams::exchange(const Descriptor& alive, int milliseconds)
{
  if (input_.empty()) in_.write_end.close();
  // `poll` ignores closed streams, whose numbers are negative. With events 0, it still reports the end of a stream.
  std::array<pollfd, 4> streams = {{{in_.write_end.get(), POLLOUT, 0},
                                    {out_.read_end.get(), POLLIN, 0},
                                    {err_.read_end.get(), POLLIN, 0},
                                    {alive.get(), 0, 0}}};
  if (poll(streams.data(), streams.size(), milliseconds) <= 0) return;
  if (streams[0].revents != 0) send();
  if (streams[1].revents != 0) receive(out_.read_end, outcome_.out, kMaxOutput + 1);
  if (streams[2].revents != 0) receive(err_.read_end, outcome_.err, kMaxErrorText);
}

ChildOutcome Streams::finish()
{
  // Only the content of the pipes can arrive, unless a process has escaped.
  constexpr int kMaxReads = 1024;
  for (int i = 0; i < kMaxReads && receive(out_.read_end, outcome_.out, kMaxOutput + 1); ++i) {
  }
  for (int i = 0; i < kMaxReads && receive(err_.read_end, outcome_.err, kMaxErrorText); ++i) {
  }
  return std::move(outcome_);
}

void Streams::send()
{
  const ssize_t num_written = write(in_.write_end.get(), input_.data(), input_.size());
  if (num_written >= 0) {
    input_.remove_prefix(static_cast<std::size_t>(num_written));
  } else if (errno != EAGAIN && errno != EINTR) {
    input_ = {};  // The child has closed its end.
  }
}

/// Reads once, and drops bytes beyond the limit; returns whether something was read.
bool Streams::receive(Descriptor& stream, std::string& text, std::size_t most)
{
  std::array<char, 65536> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
  const ssize_t num_read = read(stream.get(), buffer.data(), buffer.size());
  if (num_read > 0) {
    text.append(buffer.data(), std::min(static_cast<std::size_t>(num_read), most - text.size()));
  } else if (num_read == 0 || (errno != EAGAIN && errno != EINTR)) {
    stream.close();
  }
  return num_read > 0;
}

// -----------------------------------------------------------------------------------------------------------

/// Waits until the child ends, or until there is a reason to end it, and returns the reason.
ChildEnd wait_for_end(Streams& streams, const ForkedProcess& child, const SignalGuard& guard,
                      const Deadline& deadline)
{
  // A signal that asks this program to end is noticed after at most this time.
  constexpr int kLongestPause = 50;
  for (int pause = 1;; pause = std::min(2 * pause, kLongestPause)) {
    if (child.has_ended()) return ChildEnd::kExit;
    if (streams.is_too_verbose()) return ChildEnd::kTooVerbose;
    if (deadline.is_over()) return ChildEnd::kTimeOver;
    if (guard.is_asked_to_end()) return ChildEnd::kInterrupted;
    streams.exchange(
        child.get_alive(),
        deadline.is_set() ? std::min(pause, static_cast<int>(deadline.get_milliseconds_left())) : pause);
  }
}

ChildOutcome make_outcome(Streams& streams, ChildEnd end, int status)
{
  ChildOutcome outcome = streams.finish();
  const bool has_exited = WIFEXITED(status);
  outcome.end = end == ChildEnd::kExit && !has_exited ? ChildEnd::kSignal : end;
  outcome.code = has_exited ? WEXITSTATUS(status) : WTERMSIG(status);
  return outcome;
}

}  // namespace

ChildOutcome run_child(const std::string& command, std::string_view input, const Deadline& deadline)
{
  const SignalGuard guard;
  Streams streams(input);
  const KeptShell shell{command, streams.get_child_ends(), guard.get_mask_before()};
  ForkedProcess keeper(kKeeperStopSignal, [&](int alive) { keep_shell(shell, alive); });
  streams.close_child_ends();
  const ChildEnd end = wait_for_end(streams, keeper, guard, deadline);
  if (end != ChildEnd::kExit) stop_keeper(keeper);
  const int status = wait_for_keeper(keeper);
  return make_outcome(streams, end, status);
}

ChildOutcome run_copy(const std::function<std::string()>& work, const Deadline& deadline)
{
  const SignalGuard guard;
  Streams streams("");
  ForkedProcess copy(SIGKILL, [&](int alive) noexcept {
    become_streams(streams.get_child_ends(), alive);
    reset_ending_signals();
    pthread_sigmask(SIG_SETMASK, &guard.get_mask_before(), nullptr);
    write_all(STDOUT_FILENO, work());
  });
  streams.close_child_ends();
  const ChildEnd end = wait_for_end(streams, copy, guard, deadline);
  if (end != ChildEnd::kExit) copy.signal(SIGKILL);
  const int status = copy.wait().value_or(0);
  return make_outcome(streams, end, status);
}

}  // namespace lumo::solvers
