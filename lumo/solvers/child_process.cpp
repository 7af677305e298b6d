#include "lumo/solvers/child_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "lumo/terms/exception.h"

// NOLINTNEXTLINE(readability-redundant-declaration): POSIX leaves the declaration to the program
extern char** environ;

namespace lumo::solvers {

namespace {

constexpr std::size_t kMaxErrorText = 4096;

[[noreturn]] void fail(const char* what, int code)
{
  throw Exception(std::string("no process can be made for the command: ") + what + ": " +
                  std::strerror(code));
}

/// A descriptor that is closed with the object.
class Descriptor
{
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& rhs) noexcept : number_(rhs.number_) { rhs.number_ = -1; }
  Descriptor& operator=(Descriptor&& rhs) noexcept
  {
    std::swap(number_, rhs.number_);
    return *this;
  }
  ~Descriptor() { close(); }

  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] bool is_open() const { return number_ >= 0; }
  void close()
  {
    if (is_open()) ::close(number_);
    number_ = -1;
  }

 private:
  int number_ = -1;
};

struct Pipe
{
  Descriptor read_end;
  Descriptor write_end;
};

/// Both ends are closed in children and lie above the standard streams, even if one of those is closed: in
/// the child, no end may be overwritten before it has become a standard stream itself.
Pipe make_pipe()
{
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) fail("no pipe", errno);
  const Descriptor low_read(ends[0]);
  const Descriptor low_write(ends[1]);
  Pipe result{Descriptor(fcntl(ends[0], F_DUPFD_CLOEXEC, STDERR_FILENO + 1)),
              Descriptor(fcntl(ends[1], F_DUPFD_CLOEXEC, STDERR_FILENO + 1))};
  if (!result.read_end.is_open() || !result.write_end.is_open()) fail("no pipe", errno);
  return result;
}

void make_nonblocking(const Descriptor& descriptor)
{
  const int flags = fcntl(descriptor.get(), F_GETFL);
  if (flags < 0 || fcntl(descriptor.get(), F_SETFL, flags | O_NONBLOCK) != 0) fail("no pipe", errno);
}

// -----------------------------------------------------------------------------------------------------------
// Signals

constexpr std::array<int, 4> kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

/// Holds back SIGPIPE and the signals that would end the program before it has ended its child.
class SignalGuard
{
 public:
  SignalGuard()
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
  SignalGuard(const SignalGuard&) = delete;
  SignalGuard& operator=(const SignalGuard&) = delete;
  ~SignalGuard()
  {
    if (!had_pipe_signal_) drop_pipe_signal();
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

  /// The mask of the thread without the guard.
  [[nodiscard]] const sigset_t& get_mask_before() const { return before_; }
  /// Whether a signal waits that will end the program as soon as the guard is gone.
  [[nodiscard]] bool is_asked_to_end() const
  {
    return std::any_of(kEndingSignals.begin(), kEndingSignals.end(), [this](int signal) {
      return sigismember(&before_, signal) == 0 && !is_ignored(signal) && is_pending(signal);
    });
  }

 private:
  static bool is_ignored(int signal)
  {
    struct sigaction action;
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
  }
  static bool is_pending(int signal)
  {
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, signal) == 1;
  }
  /// Takes the signal of a write of ours to a pipe that nobody reads.
  static void drop_pipe_signal()
  {
    sigset_t pipe_signal;
    sigemptyset(&pipe_signal);
    sigaddset(&pipe_signal, SIGPIPE);
    const timespec at_once{};
    while (sigtimedwait(&pipe_signal, nullptr, &at_once) < 0 && errno == EINTR) {
    }
  }

  sigset_t before_{};
  bool had_pipe_signal_ = false;
};

// -----------------------------------------------------------------------------------------------------------
// The child

/// Starts a shell in a process group of its own; its number is that of the group.
pid_t start_shell(const std::string& command, const std::array<int, 3>& streams, const sigset_t& mask)
{
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  for (int i = 0; i < 3; ++i)
    posix_spawn_file_actions_adddup2(&actions, streams[static_cast<std::size_t>(i)], i);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
  posix_spawnattr_setpgroup(&attributes, 0);
  posix_spawnattr_setsigmask(&attributes, &mask);

  std::string shell = "sh";
  std::string option = "-c";
  std::string line = command;
  const std::array<char*, 4> argv = {shell.data(), option.data(), line.data(), nullptr};
  pid_t child = -1;
  const int failure = posix_spawn(&child, "/bin/sh", &actions, &attributes, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  if (failure != 0) fail("/bin/sh", failure);
  return child;
}

/// A running child and our ends of its standard streams.
class Child
{
 public:
  Child(const std::string& command, std::string_view input, const sigset_t& mask);
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  /// Whatever happens, nothing of the group stays.
  ~Child() { kill_group(); }

  /// Sends and receives what can be, and waits for that no longer than some milliseconds.
  void exchange(int milliseconds);
  /// Whether the child has ended; it keeps its number until `finish`.
  [[nodiscard]] bool has_ended() const;
  [[nodiscard]] bool is_too_verbose() const { return outcome_.out.size() > kMaxOutput; }
  /// Kills what is left of the group, and takes what it has printed. The end is kExit for a child that has
  /// ended before, however it did.
  [[nodiscard]] ChildOutcome finish(ChildEnd end);

 private:
  void kill_group();
  void send();
  static bool receive(Descriptor& stream, std::string& text, std::size_t most);

  std::string_view input_;  ///< what is still to be sent
  Descriptor in_;
  Descriptor out_;
  Descriptor err_;
  pid_t pid_ = -1;
  int status_ = 0;
  ChildOutcome outcome_;
};

Child::Child(const std::string& command, std::string_view input, const sigset_t& mask) : input_(input)
{
  Pipe in = make_pipe();
  Pipe out = make_pipe();
  Pipe err = make_pipe();
  in_ = std::move(in.write_end);
  out_ = std::move(out.read_end);
  err_ = std::move(err.read_end);
  for (const Descriptor* stream : {&in_, &out_, &err_})
    make_nonblocking(*stream);
  pid_ = start_shell(command, {in.read_end.get(), out.write_end.get(), err.write_end.get()}, mask);
}

void Child::exchange(int milliseconds)
{
  if (input_.empty()) in_.close();
  // Poll passes over closed streams, whose numbers are negative.
  std::array<pollfd, 3> streams = {
      {{in_.get(), POLLOUT, 0}, {out_.get(), POLLIN, 0}, {err_.get(), POLLIN, 0}}};
  if (poll(streams.data(), streams.size(), milliseconds) <= 0) return;
  if (streams[0].revents != 0) send();
  if (streams[1].revents != 0) receive(out_, outcome_.out, kMaxOutput + 1);
  if (streams[2].revents != 0) receive(err_, outcome_.err, kMaxErrorText);
}

bool Child::has_ended() const
{
  siginfo_t info{};
  return waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         info.si_pid == pid_;
}

ChildOutcome Child::finish(ChildEnd end)
{
  kill_group();
  // No more comes than lies in the pipes, unless somebody has left the group.
  constexpr int kMaxReads = 1024;
  for (int i = 0; i < kMaxReads && receive(out_, outcome_.out, kMaxOutput + 1); ++i) {
  }
  for (int i = 0; i < kMaxReads && receive(err_, outcome_.err, kMaxErrorText); ++i) {
  }
  const bool has_exited = WIFEXITED(status_);
  outcome_.end = end == ChildEnd::kExit && !has_exited ? ChildEnd::kSignal : end;
  outcome_.code = has_exited ? WEXITSTATUS(status_) : WTERMSIG(status_);
  return std::move(outcome_);
}

void Child::kill_group()
{
  if (pid_ < 0) return;
  // The child is waited for after the kill: until then, its number cannot become that of another group.
  kill(-pid_, SIGKILL);
  while (waitpid(pid_, &status_, 0) < 0 && errno == EINTR) {
  }
  pid_ = -1;
}

void Child::send()
{
  const ssize_t num_written = write(in_.get(), input_.data(), input_.size());
  if (num_written >= 0) {
    input_.remove_prefix(static_cast<std::size_t>(num_written));
  } else if (errno != EAGAIN && errno != EINTR) {
    input_ = {};  // The child wants no more.
  }
}

/// Reads once, and drops what is beyond the limit; answers whether something came.
bool Child::receive(Descriptor& stream, std::string& text, std::size_t most)
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

}  // namespace

ChildOutcome run_child(const std::string& command, std::string_view input, const Deadline& deadline)
{
  const SignalGuard guard;
  Child child(command, input, guard.get_mask_before());
  // A child that keeps its streams open longer than it lives, or closes them sooner, ends unseen by poll.
  constexpr int kLongestPause = 50;
  for (int pause = 1;; pause = std::min(2 * pause, kLongestPause)) {
    if (child.has_ended()) return child.finish(ChildEnd::kExit);
    if (child.is_too_verbose()) return child.finish(ChildEnd::kTooVerbose);
    if (deadline.is_over() || guard.is_asked_to_end()) return child.finish(ChildEnd::kStopped);
    child.exchange(deadline.is_set() ? std::min(pause, static_cast<int>(deadline.get_milliseconds_left()))
                                     : pause);
  }
}

}  // namespace lumo::solvers
