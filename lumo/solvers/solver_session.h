#ifndef LUMO_SOLVERS_SOLVER_SESSION_H
#define LUMO_SOLVERS_SOLVER_SESSION_H

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lumo/smtlib/command_splitter.h"
#include "lumo/solvers/answer.h"
#include "lumo/solvers/deadline.h"
#include "lumo/solvers/descriptor.h"
#include "lumo/solvers/forked_process.h"

namespace lumo::solvers {

class SignalGuard;

/// A solver that has not answered until the deadline.
class SolverTimeOver : public SolverError
{
 public:
  using SolverError::SolverError;
};

/// A solver that lives as long as the object: a process that reads SMT-LIB 2 commands from a pipe and answers them.
/// It ends with this process, whatever ends that.
///
/// `ask` holds back the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP, SIGQUIT) while it waits, and
/// ends the solver if one arrives. A failure is a SolverError that says what the solver did; after one, the solver
/// has been ended, and only the destructor may be called.
class SolverSession
{
 public:
  /// Starts a command line with `/bin/sh -c`, in a process group of its own.
  [[nodiscard]] static std::unique_ptr<SolverSession> start_command(const std::string& command);
  /// Starts the built-in solver in a copy of this process. A SolverError if there is none.
  /// `takes_any_terms`: also terms of other theories than Booleans and bit-vectors, at the cost of speed.
  [[nodiscard]] static std::unique_ptr<SolverSession> start_builtin(bool takes_any_terms = false);

  SolverSession(const SolverSession&) = delete;
  SolverSession& operator=(const SolverSession&) = delete;
  /// Ends the solver, and whatever the command line has started.
  ~SolverSession();

  /// Says something that the solver does not answer; it is sent with the next question.
  void tell(std::string_view commands) { unsent_ += commands; }
  /// Asks a question and waits for the answer: a word, a string or a list, as the solver prints it. A solver fails if
  /// it has printed something before it was asked, if it ends, and if it takes longer than the deadline; then the error
  /// is a SolverTimeOver.
  [[nodiscard]] std::string ask(std::string_view command, const Deadline& deadline);
  /// The same for commands of which it is not known how many answers they get.
  [[nodiscard]] std::vector<std::string> ask_all(std::string_view commands, const Deadline& deadline);

  /// Ends the solver for something that it has done.
  [[noreturn]] void fail(const std::string& what_it_did);

 private:
  /// What the process does with its standard streams, and a descriptor by which others see that it lives.
  using Work = std::function<void(const std::array<int, 3>& streams, int alive)>;

  SolverSession(std::string name, bool is_kept) : name_(std::move(name)), is_kept_(is_kept) {}
  void start(int death_signal, const Work& work);
  void stop();

  void check_silence();
  [[nodiscard]] std::string await_answer(const Deadline& deadline, const SignalGuard& guard);
  void check_limits(const Deadline& deadline, const SignalGuard& guard);
  [[noreturn]] void fail_at_end();
  /// Sends and receives what can be, and waits for that, but no longer than until the deadline.
  void exchange(const Deadline& deadline);
  void send();
  void receive();
  void receive_complaint();

  std::string name_;  ///< for messages
  bool is_kept_;      ///< by a keeper
  Descriptor in_;
  Descriptor out_;
  Descriptor err_;
  std::unique_ptr<ForkedProcess> process_;
  std::string unsent_;
  std::size_t num_sent_ = 0;  ///< bytes of it
  smtlib::CommandSplitter answers_;
  std::size_t num_received_ = 0;  ///< bytes, for the present question
  std::string complaint_;         ///< the start of what came by the standard error
};

}  // namespace lumo::solvers

#endif
