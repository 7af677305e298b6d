#include "lumo/solvers/solver_session.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "lumo/smtlib/input_error.h"
#include "lumo/solvers/builtin_solver.h"
#include "lumo/solvers/child_ends.h"
#include "lumo/solvers/child_process.h"
#include "lumo/solvers/keeper.h"
#include "lumo/solvers/signal_guard.h"
#include "lumo/solvers/solver_failures.h"

namespace lumo::solvers {

namespace {

constexpr std::size_t kMostComplaint = 4096;
/// What a solver prints after several answers
constexpr std::string_view kEndOfAnswers = "lumo-has-all-answers";

}  // namespace

// -----------------------------------------------------------------------------------------------------------
// Start and end

std::unique_ptr<SolverSession> SolverSession::start_command(const std::string& command)
{
  std::unique_ptr<SolverSession> session(
      new SolverSession("the solver \"" + smtlib::make_excerpt(command) + "\"", true));
  const SignalGuard guard;
  session->start(kKeeperStopSignal, [&](const std::array<int, 3>& streams, int alive) {
    keep_shell({command, streams, guard.get_mask_before()}, alive);
  });
  return session;
}

std::unique_ptr<SolverSession> SolverSession::start_builtin(bool takes_any_terms)
{
  if (!has_builtin_solver())
    throw SolverError("there is no built-in solver, since lumo was built without Z3");
  std::unique_ptr<SolverSession> session(new SolverSession("the built-in solver", false));
  const SignalGuard guard;
  session->start(SIGKILL, [&](const std::array<int, 3>& streams, int alive) noexcept {
    become_streams(streams, alive);
    reset_ending_signals();
    pthread_sigmask(SIG_SETMASK, &guard.get_mask_before(), nullptr);
    serve_builtin(STDIN_FILENO, STDOUT_FILENO, takes_any_terms);
  });
  return session;
}

void SolverSession::start(int death_signal, const Work& work)
{
  try {
    Pipe in = make_pipe();
    Pipe out = make_pipe();
    Pipe err = make_pipe();
    for (const Descriptor* end : {&in.write_end, &out.read_end, &err.read_end})
      make_nonblocking(*end);
    const std::array<int, 3> streams = {in.read_end.get(), out.write_end.get(), err.write_end.get()};
    process_ = std::make_unique<ForkedProcess>(death_signal, [&](int alive) { work(streams, alive); });
    in_ = std::move(in.write_end);
    out_ = std::move(out.read_end);
    err_ = std::move(err.read_end);
  } catch (const Exception& e) {
    throw SolverError(name_ + " was not started: " + e.what());
  }
}

SolverSession::~SolverSession() { stop(); }

void SolverSession::stop()
{
  if (process_ == nullptr) return;
  if (is_kept_) stop_keeper(*process_);
  process_.reset();
}

void SolverSession::fail(const std::string& what_it_did)
{
  stop();
  throw SolverError(name_ + " " + what_it_did);
}

// -----------------------------------------------------------------------------------------------------------
// Questions

std::string SolverSession::ask(std::string_view command, const Deadline& deadline)
{
  const SignalGuard guard;
  check_silence();
  tell(command);
  return await_answer(deadline, guard);
}

std::vector<std::string> SolverSession::ask_all(std::string_view commands, const Deadline& deadline)
{
  const SignalGuard guard;
  check_silence();
  tell(commands);
  tell("(echo \"" + std::string(kEndOfAnswers) + "\")\n");
  std::vector<std::string> answers;
  for (;;) {
    std::string answer = await_answer(deadline, guard);
    // Some solvers print a string as it was written, some without the quotation marks.
    if (answer == kEndOfAnswers || answer == '"' + std::string(kEndOfAnswers) + '"') return answers;
    answers.push_back(std::move(answer));
  }
}

/// What was printed since the last answer has no question.
void SolverSession::check_silence()
{
  receive();
  if (const auto answer = answers_.take(); answer || answers_.has_begun()) {
    fail("printed " + (answer ? make_one_line(answer->text) : "something") + ", but was not asked");
  }
}

std::string SolverSession::await_answer(const Deadline& deadline, const SignalGuard& guard)
{
  num_received_ = 0;
  for (;;) {
    if (const auto answer = answers_.take()) return std::string(answer->text);
    if (!out_.is_open()) fail_at_end();
    check_limits(deadline, guard);
    exchange(deadline);
  }
}

void SolverSession::check_limits(const Deadline& deadline, const SignalGuard& guard)
{
  if (num_received_ > kMaxOutput) fail("printed more than " + std::to_string(kMaxOutput) + " bytes");
  if (guard.is_asked_to_end()) fail("was ended, since the program was asked to end");
  if (!deadline.is_over()) return;
  std::ostringstream sentence;
  sentence << name_ << " did not answer within the time limit of " << deadline.get_seconds() << " s";
  stop();
  throw SolverTimeOver(sentence.str());
}

/// Tells how a solver that has closed its output has ended.
void SolverSession::fail_at_end()
{
  constexpr int kMostMilliseconds = 1000;
  pollfd alive{process_->get_alive().get(), 0, 0};
  const bool has_ended = poll(&alive, 1, kMostMilliseconds) > 0;
  receive_complaint();
  if (!has_ended) fail("has closed its output without an answer");
  ChildOutcome outcome;
  int status = 0;
  try {
    status = is_kept_ ? wait_for_keeper(*process_) : process_->wait().value_or(0);
  } catch (const Exception& e) {
    fail(std::string("was not started: ") + e.what());
  }
  process_.reset();
  outcome.end = WIFEXITED(status) ? ChildEnd::kExit : ChildEnd::kSignal;
  outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
  outcome.err = std::move(complaint_);
  fail(describe_end_without_answer(outcome));
}

void SolverSession::exchange(const Deadline& deadline)
{
  // A signal that asks this program to end is noticed after such a pause.
  constexpr int kLongestPause = 50;
  const int pause = deadline.is_set()
                        ? std::min(kLongestPause, static_cast<int>(deadline.get_milliseconds_left()))
                        : kLongestPause;
  // Poll passes over closed streams, whose numbers are negative.
  std::array<pollfd, 3> streams = {
      {{unsent_.empty() ? -1 : in_.get(), POLLOUT, 0}, {out_.get(), POLLIN, 0}, {err_.get(), POLLIN, 0}}};
  if (poll(streams.data(), streams.size(), pause) <= 0) return;
  if (streams[0].revents != 0) send();
  if (streams[1].revents != 0) receive();
  if (streams[2].revents != 0) receive_complaint();
}

void SolverSession::send()
{
  const ssize_t num_written = write(in_.get(), unsent_.data() + num_sent_, unsent_.size() - num_sent_);
  if (num_written >= 0) {
    num_sent_ += static_cast<std::size_t>(num_written);
  } else if (errno != EAGAIN && errno != EINTR) {
    num_sent_ = unsent_.size();  // The solver has closed its end.
  }
  if (num_sent_ < unsent_.size()) return;
  unsent_.clear();
  num_sent_ = 0;
}

void SolverSession::receive()
{
  std::array<char, 65536> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
  const ssize_t num_read = read(out_.get(), buffer.data(), buffer.size());
  if (num_read > 0) {
    num_received_ += static_cast<std::size_t>(num_read);
    answers_.add({buffer.data(), static_cast<std::size_t>(num_read)});
  } else if (num_read == 0 || (errno != EAGAIN && errno != EINTR)) {
    out_.close();
  }
}

void SolverSession::receive_complaint()
{
  std::array<char, 4096> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
  const ssize_t num_read = read(err_.get(), buffer.data(), buffer.size());
  if (num_read > 0) {
    complaint_.append(buffer.data(),
                      std::min(static_cast<std::size_t>(num_read), kMostComplaint - complaint_.size()));
  } else if (num_read == 0 || (errno != EAGAIN && errno != EINTR)) {
    err_.close();
  }
}

}  // namespace lumo::solvers
